// The global queues on worker threads.
#pragma once

#include "platform/linux/system/DelayTimer.h"
#include "ports/Queues.h"

#include <chrono>
#include <cstddef>
#include <memory>

namespace sonvara {

class Workers;

/// A task gets a worker of its own at once, up to a limit for each quality of service; what is beyond
/// waits. The limits are separate, so that no kind of blocked work holds up another: time limits
/// still strike when every urgent worker waits for a child process. The last idle worker stays.
class WorkerPool final : public GlobalQueue {
public:
    /// Idle workers leave after `quietWhile`.
    explicit WorkerPool(std::chrono::milliseconds quietWhile = std::chrono::seconds(10));
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;
    /// Drops the tasks that have not begun. Workers that are still busy are left to end by themselves.
    ~WorkerPool() override;

    void post(QualityOfService quality, Task task) override;
    std::shared_ptr<DelayedTask> postAfter(QualityOfService quality, std::chrono::milliseconds delay,
                                           Task task) override;

    /// Drops the tasks that have not begun, takes no more, and waits at most `limit` for the others.
    /// Returns whether all workers have gone; if not, whatever their tasks use must be kept alive.
    bool shutDown(std::chrono::milliseconds limit);

    /// How many worker threads there are now.
    [[nodiscard]] std::size_t threadCount() const;

private:
    const std::shared_ptr<Workers> workers_;  // shared with the threads, which may outlive the pool
    const std::shared_ptr<DelayTimer> timer_;
};

}  // namespace sonvara
