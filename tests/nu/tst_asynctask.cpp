#include "nu/asynctask.h"

#include <QSignalSpy>
#include <QtTest>

namespace {

// Exposes the protected setters.
class Task : public nu::AsyncTask
{
public:
    using AsyncTask::AsyncTask;
    using AsyncTask::setErrorMessage;
    using AsyncTask::setProgressFinished;
    using AsyncTask::setProgressMax;
    using AsyncTask::setProgressMessage;
    using AsyncTask::setProgressValue;

protected:
    void run() override {}
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

};

QTEST_GUILESS_MAIN(TestAsyncTask)
#include "tst_asynctask.moc"
