#include "platform/linux/system/DelayTimer.h"

#include <system_error>

namespace sonvara {

void DelayTimer::shutDown()
{
    std::map<Ticket, std::function<void()>> forgotten;
    {
        const std::lock_guard lock(mutex_);
        isShutDown_ = true;
        forgotten.swap(calls_);
        changed_.notify_all();
    }
    if (thread_.joinable()) thread_.join();
}

DelayTimer::Ticket DelayTimer::schedule(std::chrono::milliseconds delay, std::function<void()> call)
{
    const auto due = std::chrono::steady_clock::now() + delay;
    const std::lock_guard lock(mutex_);
    const Ticket ticket{due, ++lastNumber_};
    if (isShutDown_) return ticket;
    calls_.emplace(ticket, std::move(call));
    if (isRunning_)
        changed_.notify_all();
    else
        start();
    return ticket;
}

void DelayTimer::start()
{
    if (thread_.joinable()) thread_.join();  // the former thread, past its last use of the lock
    try {
        thread_ = std::thread([this] { run(); });
        isRunning_ = true;
    } catch (const std::system_error&) {
        // The system has no thread left: the call waits for the next one's start.
    }
}

void DelayTimer::cancel(const Ticket& ticket)
{
    std::map<Ticket, std::function<void()>>::node_type forgotten;  // destroyed outside the lock
    const std::lock_guard lock(mutex_);
    forgotten = calls_.extract(ticket);
    changed_.notify_all();
}

void DelayTimer::run()
{
    std::unique_lock lock(mutex_);
    while (!calls_.empty()) {
        const auto due = calls_.begin()->first.first;
        if (std::chrono::steady_clock::now() < due) {
            changed_.wait_until(lock, due);
            continue;
        }
        auto next = calls_.extract(calls_.begin());
        lock.unlock();
        next.mapped()();
        next = {};
        lock.lock();
    }
    isRunning_ = false;
}

}  // namespace sonvara
