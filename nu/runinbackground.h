#pragma once

#include <functional>

namespace nu {

// Runs work on a thread of its own while the calling thread turns its event loop (user input
// aside), so that windows stay drawn and timers run during a long read; returns once the work is
// done and rethrows what it threw. The work must not touch objects of the calling thread.
void runInBackground(const std::function<void()>& work);

} // namespace nu
