#include "cli/taskrunner.h"

#include "cli/interruption.h"
#include "cli/progressbar.h"
#include "nu/asynctask.h"

#include <QEventLoop>
#include <QTimer>

namespace Sorvik {
namespace Cli {

int TaskRunner::run(nu::AsyncTask& task, ProgressBar& bar)
{
    Interruption interruption;
    bar.follow(task);
    QEventLoop loop;
    QObject::connect(&task, &QThread::finished, &loop, &QEventLoop::quit);
    // The signal handler only sets a flag; it is turned into the task's cancellation here.
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &task, [&task] {
        if (Interruption::isRequested() && task.getState() == nu::AsyncTask::Running)
            task.slotSetCancelled();
    });
    poll.start(50);
    task.start();
    loop.exec();
    task.wait();
    bar.finish();
    // A Ctrl-C that came after the task had ended changes nothing: its files are complete.
    return task.getState();
}

} // namespace Cli
} // namespace Sorvik
