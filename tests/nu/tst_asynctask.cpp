#include "nu/asynctask.h"

#include <QSignalSpy>
#include <QtTest>

namespace {

// Exposes the protected setters; run() reports a few steps unless told to fail.
class Task : public nu::AsyncTask
{
public:
    using AsyncTask::AsyncTask;
    using AsyncTask::setErrorMessage;
    using AsyncTask::setProgressFinished;
    using AsyncTask::setProgressMax;
    using AsyncTask::setProgressMessage;
    using AsyncTask::setProgressValue;

    bool failInRun = false;

protected:
    void run() override
    {
        setProgressMax(0, 3);
        for (int i = 0; i < 3 && !isInterruptionRequested(); ++i)
            setProgressValue(0, i + 1);
        if (failInRun)
            setErrorMessage(QStringLiteral("Pie chart couldn't be generated"));
    }
};

} // namespace

class TestAsyncTask : public QObject
{
    Q_OBJECT
private slots:
    void levelsCarryTheirWholeEntry()
    {
        Task task;
        QSignalSpy spy(&task, &nu::AsyncTask::progressChanged);
        task.setProgressMax(1, 10);
        task.setProgressMessage(1, QStringLiteral("Counting nodes..."));
        task.setProgressValue(1, 4);
        QCOMPARE(spy.count(), 3);
        QCOMPARE(spy.last(), (QVariantList{1, 4, 10, QStringLiteral("Counting nodes...")}));
        // An update of a level drops the deeper ones, which come back fresh.
        task.setProgressMessage(0, QStringLiteral("overall"));
        QCOMPARE(task.getProgress(1).maximum, 0);
        QCOMPARE(task.getProgress(1).value, 0);
        // Finished is a full bar of one step.
        task.setProgressMax(0, 8);
        task.setProgressValue(0, 5);
        task.setProgressFinished(0);
        QCOMPARE(task.getProgress(0).value, 1);
        QCOMPARE(task.getProgress(0).maximum, 1);
        QVERIFY(task.getProgress(-1).message.isEmpty());
    }

    void cancellationSilencesEverySetter()
    {
        Task task;
        task.setProgressMax(0, 4);
        task.setProgressValue(0, 2);
        task.slotSetCancelled();
        QVERIFY(task.isFinished());
        QCOMPARE(task.getProgress(0).value, 0);

        QSignalSpy spy(&task, &nu::AsyncTask::progressChanged);
        task.setProgressValue(0, 3);
        task.setProgressMax(1, 9);
        task.setProgressMessage(0, QStringLiteral("late"));
        task.setProgressFinished(0);
        // A failure that follows a cancellation is part of it.
        task.setErrorMessage(QStringLiteral("Pie chart couldn't be generated"));
        QCOMPARE(spy.count(), 0);
        QCOMPARE(task.getProgress(0).message, QStringLiteral("Cancelled"));
        QCOMPARE(task.getState(), int(nu::AsyncTask::Cancelled));
        QVERIFY(task.getErrorMessage().isEmpty());
    }

    void runReportsAcrossThreadsOrFails_data()
    {
        QTest::addColumn<bool>("fail");
        QTest::newRow("success") << false;
        QTest::newRow("failure") << true;
    }

    void runReportsAcrossThreadsOrFails()
    {
        QFETCH(bool, fail);
        Task task;
        task.failInRun = fail;
        QList<int> values;
        QObject receiver;
        connect(&task, &nu::AsyncTask::progressChanged, &receiver,
                [&values](int, int value, int, QString) { values << value; }, Qt::QueuedConnection);
        task.start();
        QVERIFY(task.wait(10000));
        QTRY_COMPARE(values.size(), fail ? 6 : 4);
        QCOMPARE(values.mid(0, 4), (QList<int>{0, 1, 2, 3}));
        QCOMPARE(task.getState(), int(fail ? nu::AsyncTask::Failed : nu::AsyncTask::Running));
        QCOMPARE(task.isFinished(), fail);
        QCOMPARE(task.getErrorMessage(), fail ? QStringLiteral("Pie chart couldn't be generated") : QString());
        // A failure shows in the overall bar, emptied.
        if (fail) {
            QCOMPARE(task.getProgress(0).message, QStringLiteral("Pie chart couldn't be generated"));
            QCOMPARE(task.getProgress(0).value, 0);
        }
    }
};

QTEST_GUILESS_MAIN(TestAsyncTask)
#include "tst_asynctask.moc"
