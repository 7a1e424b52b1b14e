#include "viewer/lingeringtasks.h"

#include "viewer/buildncbipiechartasynctask.h"

#include <QApplication>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>

namespace Sorvik {
namespace Viewer {

void LingeringTasks::add(BuildNcbiPiechartAsyncTask* task)
{
    tasks.emplace_back(task);
}

void LingeringTasks::wait(const BuildNcbiPiechartAsyncTask* running)
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    for (QPointer<BuildNcbiPiechartAsyncTask>& task : tasks) {
        if (!task || task == running || !task->isRunning())
            continue;
        // The thread's end is polled as well, for it may come between the test and the
        // connection.
        QEventLoop loop;
        QTimer poll;
        QObject::connect(task.data(), &QThread::finished, &loop, &QEventLoop::quit);
        QObject::connect(&poll, &QTimer::timeout, &loop, [&loop, &task] {
            if (!task || !task->isRunning())
                loop.quit();
        });
        poll.start(20);
        loop.exec(QEventLoop::ExcludeUserInputEvents);
    }
    QApplication::restoreOverrideCursor();
    finish(running);
}

void LingeringTasks::finish(const BuildNcbiPiechartAsyncTask* running)
{
    for (QPointer<BuildNcbiPiechartAsyncTask>& task : tasks) {
        // Its destructor waits for its thread and deletes what a failed run left.
        if (task && task != running)
            delete task.data();
    }
    tasks.erase(std::remove_if(tasks.begin(), tasks.end(),
                               [running](const QPointer<BuildNcbiPiechartAsyncTask>& t) { return !t || t != running; }),
                tasks.end());
}

} // namespace Viewer
} // namespace Sorvik
