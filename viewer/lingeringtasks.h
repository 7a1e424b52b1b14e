#pragma once

#include <QPointer>

#include <vector>

namespace Sorvik {
namespace Viewer {

class BuildNcbiPiechartAsyncTask;

// The build tasks a window started, kept so that those still ending after a cancellation can be
// waited for: each deletes the working file when it goes, which must not happen under a new
// chart.
class LingeringTasks
{
public:
    void add(BuildNcbiPiechartAsyncTask* task);
    // Waits for the tasks other than the running one to end and deletes them, the event loop
    // turning meanwhile (user input aside), so that the window goes on being drawn.
    void wait(const BuildNcbiPiechartAsyncTask* running);
    // The same, blocking: for the window's end.
    void finish(const BuildNcbiPiechartAsyncTask* running);

private:
    std::vector<QPointer<BuildNcbiPiechartAsyncTask>> tasks;
};

} // namespace Viewer
} // namespace Sorvik
