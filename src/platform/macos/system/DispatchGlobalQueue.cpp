#include "platform/macos/system/DispatchGlobalQueue.h"

#include "platform/macos/system/DispatchTask.h"

#include <dispatch/dispatch.h>

#include <atomic>
#include <utility>

namespace sonvara {

namespace {

dispatch_queue_t queueFor(QualityOfService quality)
{
    switch (quality) {
    case QualityOfService::userInitiated: return dispatch_get_global_queue(QOS_CLASS_USER_INITIATED, 0);
    case QualityOfService::standard: return dispatch_get_global_queue(QOS_CLASS_DEFAULT, 0);
    case QualityOfService::utility: break;
    }
    return dispatch_get_global_queue(QOS_CLASS_UTILITY, 0);
}

/// The queue keeps a scheduled function for good, so a cancelled task leaves an empty shell in it.
class CancellableTask final : public DelayedTask {
public:
    explicit CancellableTask(Task task) : task_(std::move(task)) {}

    void cancel() override
    {
        if (claim()) task_ = nullptr;  // what it holds is let go now, not when its time comes
    }

    void runUnlessCancelled()
    {
        if (!claim()) return;
        task_();
        task_ = nullptr;
    }

private:
    /// True for the first caller only, which then has the task to itself.
    bool claim() { return !claimed_.exchange(true); }

    std::atomic<bool> claimed_ = false;
    Task task_;
};

}  // namespace

void DispatchGlobalQueue::post(QualityOfService quality, Task task)
{
    dispatch_async_f(queueFor(quality), makeDispatchTask(std::move(task)), runDispatchTask);
}

std::shared_ptr<DelayedTask> DispatchGlobalQueue::postAfter(QualityOfService quality,
                                                            std::chrono::milliseconds delay, Task task)
{
    auto delayed = std::make_shared<CancellableTask>(std::move(task));
    const auto nanoseconds = std::chrono::duration_cast<std::chrono::nanoseconds>(delay).count();
    dispatch_after_f(dispatch_time(DISPATCH_TIME_NOW, nanoseconds), queueFor(quality),
                     makeDispatchTask([delayed] { delayed->runUnlessCancelled(); }), runDispatchTask);
    return delayed;
}

}  // namespace sonvara
