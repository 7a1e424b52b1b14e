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
    void updatingALevelDropsDeeperLevels();
    void settersEmitTheLevelsWholeEntry();
    void finishedSetsValueAndMaximumToOne();
    void cancellationSilencesEverySetter();
    void errorMessageFailsTheTask();
    void failureAfterCancellationStaysCancelled();
    void progressCrossesThreads();
    void missingLevelIsEmpty();
};

void TestAsyncTask::updatingALevelDropsDeeperLevels()
{
    Task task;
    task.setProgressMax(1, 50);
    task.setProgressValue(1, 20);
    QCOMPARE(task.getProgress(1).value, 20);
    task.setProgressMessage(0, QStringLiteral("overall"));
    QCOMPARE(task.getProgress(1).maximum, 0);
    QCOMPARE(task.getProgress(1).value, 0);
    // the deeper level comes back as a fresh entry
    task.setProgressValue(1, 3);
    QCOMPARE(task.getProgress(1).value, 3);
    QCOMPARE(task.getProgress(1).maximum, 0);
    QCOMPARE(task.getProgress(0).message, QStringLiteral("overall"));
}

void TestAsyncTask::settersEmitTheLevelsWholeEntry()
{
    Task task;
    QSignalSpy spy(&task, &nu::AsyncTask::progressChanged);
    task.setProgressMax(1, 10);
    task.setProgressMessage(1, QStringLiteral("Counting nodes..."));
    task.setProgressValue(1, 4);
    QCOMPARE(spy.count(), 3);
    const QList<QVariant> last = spy.last();
    QCOMPARE(last.at(0).toInt(), 1);
    QCOMPARE(last.at(1).toInt(), 4);
    QCOMPARE(last.at(2).toInt(), 10);
    QCOMPARE(last.at(3).toString(), QStringLiteral("Counting nodes..."));
}

void TestAsyncTask::finishedSetsValueAndMaximumToOne()
{
    Task task;
    task.setProgressMax(0, 8);
    task.setProgressValue(0, 5);
    task.setProgressFinished(0);
    QCOMPARE(task.getProgress(0).value, 1);
    QCOMPARE(task.getProgress(0).maximum, 1);
}

void TestAsyncTask::cancellationSilencesEverySetter()
{
    Task task;
    task.setProgressMax(0, 4);
    task.setProgressValue(0, 2);
    task.slotSetCancelled();
    QCOMPARE(task.getState(), int(nu::AsyncTask::Cancelled));
    QVERIFY(task.isFinished());
    QCOMPARE(task.getProgress(0).message, QStringLiteral("Cancelled"));
    QCOMPARE(task.getProgress(0).value, 0);

    QSignalSpy spy(&task, &nu::AsyncTask::progressChanged);
    task.setProgressValue(0, 3);
    task.setProgressMax(1, 9);
    task.setProgressMessage(0, QStringLiteral("late"));
    task.setProgressFinished(0);
    task.setErrorMessage(QStringLiteral("late failure"));
    QCOMPARE(spy.count(), 0);
    QCOMPARE(task.getProgress(0).message, QStringLiteral("Cancelled"));
    QCOMPARE(task.getState(), int(nu::AsyncTask::Cancelled));
}

void TestAsyncTask::errorMessageFailsTheTask()
{
    Task task;
    task.failInRun = true;
    task.start();
    QVERIFY(task.wait(10000));
    QCOMPARE(task.getState(), int(nu::AsyncTask::Failed));
    QCOMPARE(task.getErrorMessage(), QStringLiteral("Pie chart couldn't be generated"));
    QCOMPARE(task.getProgress(0).message, QStringLiteral("Pie chart couldn't be generated"));
    QCOMPARE(task.getProgress(0).value, 0);
}

void TestAsyncTask::failureAfterCancellationStaysCancelled()
{
    Task task;
    task.slotSetCancelled();
    task.setErrorMessage(QStringLiteral("Pie chart couldn't be generated"));
    QCOMPARE(task.getState(), int(nu::AsyncTask::Cancelled));
    QVERIFY(task.getErrorMessage().isEmpty());
}

void TestAsyncTask::progressCrossesThreads()
{
    Task task;
    QList<int> values;
    QObject receiver;
    connect(&task, &nu::AsyncTask::progressChanged, &receiver,
            [&values](int, int value, int, QString) { values << value; }, Qt::QueuedConnection);
    task.start();
    QVERIFY(task.wait(10000));
    QTRY_COMPARE(values.size(), 4);
    QCOMPARE(values, (QList<int>{0, 1, 2, 3}));
    QCOMPARE(task.getState(), int(nu::AsyncTask::Running));
    QVERIFY(!task.isFinished());
}

void TestAsyncTask::missingLevelIsEmpty()
{
    Task task;
    QCOMPARE(task.getProgress(3).maximum, 0);
    QVERIFY(task.getProgress(-1).message.isEmpty());
}

QTEST_GUILESS_MAIN(TestAsyncTask)
#include "tst_asynctask.moc"
