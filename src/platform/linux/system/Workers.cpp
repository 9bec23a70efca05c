#include "platform/linux/system/Workers.h"

#include <algorithm>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace sonvara {

namespace {

constexpr std::size_t idleLimit = 8;

}  // namespace

std::size_t Workers::Lane::runnable() const
{
    return std::min(waiting.size(), limit - running);
}

std::size_t Workers::runnable() const
{
    std::size_t count = 0;
    for (const auto& lane : lanes_) count += lane.runnable();
    return count;
}

Workers::Lane* Workers::nextLane()
{
    const auto lane = std::ranges::find_if(lanes_, [](const Lane& each) { return each.runnable() > 0; });
    return lane == lanes_.end() ? nullptr : &*lane;
}

void Workers::post(QualityOfService quality, Task task)
{
    std::unique_lock lock(mutex_);
    if (isShutDown_) return;
    lanes_[static_cast<std::size_t>(quality)].waiting.push_back(std::move(task));
    if (idle_ < runnable()) return startThread();
    lock.unlock();  // else the worker that wakes would have to wait for it
    workArrived_.notify_one();
}

void Workers::startThread()
{
    try {
        std::thread([self = shared_from_this()] { self->work(); }).detach();
        ++threads_;
        ++idle_;
    } catch (const std::system_error&) {
        // The system has no thread left: the task waits for a worker or for the next one's start.
    }
}

void Workers::work()
{
    std::unique_lock lock(mutex_);
    while (waitForWork(lock)) {
        Lane& lane = *nextLane();
        Task task = std::move(lane.waiting.front());
        lane.waiting.pop_front();
        ++lane.running;
        if (--idle_ == 0) allBusy_ = std::chrono::steady_clock::now();
        lock.unlock();
        task();
        task = nullptr;  // what it holds may be freed here, but not under the lock
        lock.lock();
        ++idle_;
        --lane.running;
    }
    --idle_;
    --threads_;
    threadLeft_.notify_all();
}

// Whether there is a task to run; if not, the thread is to leave.
bool Workers::waitForWork(std::unique_lock<std::mutex>& lock)
{
    const auto isWanted = [this] { return isShutDown_ || nextLane() != nullptr; };
    while (!isWanted()) {
        if (idle_ > idleLimit) return false;
        // Each gets its turn in time, even if one could do all the work.
        if (idle_ > 1 && std::chrono::steady_clock::now() - allBusy_ >= quietWhile_) return false;
        if (idle_ == 1)
            workArrived_.wait(lock);
        else if (!workArrived_.wait_for(lock, quietWhile_, isWanted) && idle_ > 1)
            return false;
    }
    return !isShutDown_;
}

bool Workers::shutDown(std::chrono::milliseconds limit)
{
    std::vector<std::deque<Task>> dropped;  // destroyed after the lock is released
    dropped.reserve(lanes_.size());
    std::unique_lock lock(mutex_);
    isShutDown_ = true;
    for (auto& lane : lanes_) dropped.push_back(std::exchange(lane.waiting, {}));
    workArrived_.notify_all();
    return threadLeft_.wait_for(lock, limit, [this] { return threads_ == 0; });
}

std::size_t Workers::threadCount() const
{
    const std::lock_guard lock(mutex_);
    return threads_;
}

}  // namespace sonvara
