#include "nu/runinbackground.h"

#include <QThread>
#include <QTimer>
#include <QtTest>

#include <atomic>
#include <stdexcept>

class TestRunInBackground : public QObject
{
    Q_OBJECT
private slots:
    // The caller's timers go on while the work runs elsewhere, and the call ends with the work.
    void workRunsElsewhereWhileTheCallerTurnsItsLoop()
    {
        std::atomic<bool> done{false};
        Qt::HANDLE worker = nullptr;
        int ticks = 0;
        QTimer timer;
        connect(&timer, &QTimer::timeout, [&ticks] { ++ticks; });
        timer.start(5);
        nu::runInBackground([&] {
            worker = QThread::currentThreadId();
            QThread::msleep(200);
            done = true;
        });
        QVERIFY(done);
        QVERIFY(worker != QThread::currentThreadId());
        QVERIFY2(ticks >= 5, qPrintable(QString::number(ticks)));
    }

    void failuresReachTheCaller()
    {
        QVERIFY_EXCEPTION_THROWN(nu::runInBackground([] { throw std::runtime_error("unreadable"); }),
                                 std::runtime_error);
        // Work that ends at once, before the loop starts, ends the call too.
        int runs = 0;
        nu::runInBackground([&runs] { ++runs; });
        QCOMPARE(runs, 1);
    }
};

QTEST_GUILESS_MAIN(TestRunInBackground)
#include "tst_runinbackground.moc"
