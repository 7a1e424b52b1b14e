#include "nu/asynctask.h"

#include <QMutexLocker>

namespace nu {

AsyncTask::AsyncTask(QObject* parent)
    : QThread(parent)
{
}

QString AsyncTask::getErrorMessage() const
{
    QMutexLocker lock(&mutex);
    return errorMessage;
}

AsyncTask::Progress AsyncTask::getProgress(int level) const
{
    QMutexLocker lock(&mutex);
    if (level < 0 || level >= progress.size())
        return Progress();
    return progress.at(level);
}

template <typename Change>
void AsyncTask::changeProgress(int level, Change change)
{
    if (level < 0 || isFinished())
        return;
    Progress current;
    {
        // The worker and the GUI thread both report progress; the signal goes out after the
        // lock is released so that a directly connected slot may read the task again.
        QMutexLocker lock(&mutex);
        progress.resize(level + 1);
        change(progress[level]);
        current = progress.at(level);
    }
    emit progressChanged(level, current.value, current.maximum, current.message);
}

void AsyncTask::setProgressMax(int level, int maximum)
{
    changeProgress(level, [maximum](Progress& p) { p.maximum = maximum; });
}

void AsyncTask::setProgressValue(int level, int value)
{
    changeProgress(level, [value](Progress& p) { p.value = value; });
}

void AsyncTask::setProgressMessage(int level, const QString& message)
{
    changeProgress(level, [&message](Progress& p) { p.message = message; });
}

void AsyncTask::setProgressFinished(int level)
{
    changeProgress(level, [](Progress& p) {
        p.value = 1;
        p.maximum = 1;
    });
}

void AsyncTask::setErrorMessage(const QString& message)
{
    // A failure that follows a cancellation (a step aborted by it) is part of the cancellation.
    if (isFinished())
        return;
    {
        QMutexLocker lock(&mutex);
        errorMessage = message;
    }
    setProgressValue(0, 0);
    setProgressMessage(0, message);
    int running = Running;
    state.compare_exchange_strong(running, Failed);
}

void AsyncTask::slotSetCancelled()
{
    requestInterruption();
    setProgressValue(0, 0);
    setProgressMessage(0, tr("Cancelled"));
    int running = Running;
    state.compare_exchange_strong(running, Cancelled);
}

} // namespace nu
