#pragma once

namespace nu {
class AsyncTask;
}

namespace Sorvik {
namespace Cli {

class ProgressBar;

// Runs a background task to its end on the command line: its progress on the bar, Ctrl-C as its
// cancellation.
class TaskRunner
{
public:
    // Starts the task and returns its state (nu::AsyncTask::Running for success) once its thread
    // has ended.
    static int run(nu::AsyncTask& task, ProgressBar& bar);
};

} // namespace Cli
} // namespace Sorvik
