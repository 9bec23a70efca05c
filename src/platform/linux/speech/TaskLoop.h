// The inbox of one thread: tasks from other threads, and what else that thread waits for.
#pragma once

#include "platform/posix/Descriptors.h"
#include "ports/Queues.h"

#include <chrono>
#include <deque>
#include <mutex>
#include <optional>

namespace sonvara {

using SteadyTime = std::chrono::steady_clock::time_point;

/// Tasks are run in order of posting, by the one thread that calls `wait`.
class TaskLoop {
public:
    /// Throws std::system_error if there can be no more descriptors.
    TaskLoop();

    /// Any thread; never blocks.
    void post(Task task);

    /// Sleeps until tasks are there, the other end of `peer` (a socket, or -1) has hung up, or
    /// `until` has come; runs the tasks. Returns whether the peer hung up.
    bool wait(int peer, std::optional<SteadyTime> until);

private:
    void runTasks();

    FileDescriptor wake_;
    std::mutex mutex_;
    std::deque<Task> tasks_;
};

}  // namespace sonvara
