#include "nu/runinbackground.h"

#include <QEventLoop>
#include <QThread>

#include <exception>
#include <memory>

namespace nu {

void runInBackground(const std::function<void()>& work)
{
    std::exception_ptr failure;
    std::unique_ptr<QThread> thread(QThread::create([&work, &failure] {
        try {
            work();
        } catch (...) {
            failure = std::current_exception();
        }
    }));
    QEventLoop loop;
    // Queued to this thread, so an end that comes before exec() still ends the loop.
    QObject::connect(thread.get(), &QThread::finished, &loop, &QEventLoop::quit, Qt::QueuedConnection);
    thread->start();
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    thread->wait();
    if (failure)
        std::rethrow_exception(failure);
}

} // namespace nu
