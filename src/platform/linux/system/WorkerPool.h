// The global queues on Qt's thread pools.
#pragma once

#include "ports/Queues.h"

#include <QObject>
#include <QThreadPool>

#include <array>
#include <chrono>
#include <cstddef>
#include <memory>
#include <mutex>

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
    /// Drops the tasks that have not begun. Workers that are still busy are left to end by themselves.
    ~WorkerPool() override;

    void post(QualityOfService quality, Task task) override;
    std::shared_ptr<DelayedTask> postAfter(QualityOfService quality, std::chrono::milliseconds delay,
                                           Task task) override;

    /// Drops the tasks that have not begun, takes no more, and waits at most `limit` for the others.
    /// Returns whether all workers have gone; if not, whatever their tasks use must be kept alive.
    bool shutDown(std::chrono::milliseconds limit);

private:
    /// By quality of service, most urgent first; left behind with a worker that is still busy.
    std::array<std::unique_ptr<QThreadPool>, 3> pools_;
    QObject timing_;    // the delayed tasks' timers belong to it
    std::mutex mutex_;  // so that no task begins behind the wait for the last one
    bool isShutDown_ = false;
};

}  // namespace sonvara
