// The global queues on threads that come and go.
#pragma once

#include "platform/linux/system/QtSerialQueue.h"
#include "ports/Queues.h"

#include <array>
#include <chrono>
#include <memory>

namespace sonvara {

/// To be made and destroyed on the main thread, whose event loop times the delayed tasks.
///
/// A task gets a worker of its own at once, up to a limit for each quality of service; what is beyond waits. The
/// limits are separate, so that no kind of blocked work holds up another: time limits still strike when every
/// urgent worker waits for a child process. A worker that has had nothing to do for a while leaves.
class WorkerPool final : public GlobalQueue {
public:
    /// Longer than a poll's interval, so that one worker stays for the polls; and shorter than two, so that of
    /// several that take turns all but one leave.
    static constexpr std::chrono::milliseconds quietWhile{4000};

    explicit WorkerPool(std::chrono::milliseconds quiet = quietWhile);
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;
    /// Drops the tasks that have not begun, and waits for the others: see `shutDown`.
    ~WorkerPool() override;

    void post(QualityOfService quality, Task task) override;
    std::shared_ptr<DelayedTask> postAfter(QualityOfService quality, std::chrono::milliseconds delay,
                                           Task task) override;

    /// Drops the tasks that have not begun, takes no more, and waits at most `limit` for the others.
    /// Returns whether all workers have gone; if not, whatever their tasks use must be kept alive, and this object.
    bool shutDown(std::chrono::milliseconds limit);

private:
    class Lane;

    QtSerialQueue timing_;  // of the main thread; the delayed tasks' timers belong to it
    std::array<std::unique_ptr<Lane>, 3> lanes_;  // by quality of service, most urgent first
};

}  // namespace sonvara
