#include "platform/linux/speech/TaskLoop.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <limits>
#include <poll.h>
#include <sys/eventfd.h>
#include <system_error>

namespace sonvara {

namespace {

/// For poll: milliseconds until `until`, rounded up so that the time has come when poll returns.
int pollTimeout(std::optional<SteadyTime> until)
{
    if (!until) return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*until - std::chrono::steady_clock::now());
    return static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, std::numeric_limits<int>::max()));
}

}  // namespace

TaskLoop::TaskLoop() : wake_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    if (wake_.get() < 0) throw std::system_error(errno, std::generic_category(), "eventfd");
}

void TaskLoop::post(Task task)
{
    {
        const std::lock_guard lock(mutex_);
        tasks_.push_back(std::move(task));
    }
    // Fails only when the counter is full, and then the reader is awake anyway.
    [[maybe_unused]] const int ignored = ::eventfd_write(wake_.get(), 1);
}

bool TaskLoop::wait(int peer, std::optional<SteadyTime> until)
{
    std::array<pollfd, 2> watched{{{wake_.get(), POLLIN, 0}, {peer, POLLRDHUP, 0}}};
    ::poll(watched.data(), watched.size(), pollTimeout(until));
    runTasks();
    return (watched[1].revents & (POLLRDHUP | POLLHUP | POLLERR)) != 0;
}

void TaskLoop::runTasks()
{
    std::deque<Task> tasks;
    {
        const std::lock_guard lock(mutex_);
        eventfd_t ignored = 0;
        ::eventfd_read(wake_.get(), &ignored);
        tasks.swap(tasks_);
    }
    for (const Task& task : tasks) task();
}

}  // namespace sonvara
