#include "platform/linux/system/WorkerPool.h"

#include <QDeadlineTimer>
#include <QTimer>

#include <utility>

namespace sonvara {

namespace {

constexpr std::array limits{64, 16, 16};  // how many tasks may run at once, by quality of service

// A task that exactly one of two parties gets: the worker that runs it or whoever cancels it.
class CancellableTask final : public DelayedTask {
public:
    explicit CancellableTask(Task task) : task_(std::move(task)) {}

    void cancel() override { (void)take(); }
    void run()
    {
        if (const Task task = take()) task();
    }
    [[nodiscard]] bool isCancelled() const
    {
        const std::lock_guard lock(mutex_);
        return !task_;
    }

private:
    Task take()
    {
        const std::lock_guard lock(mutex_);
        return std::exchange(task_, nullptr);
    }

    mutable std::mutex mutex_;  // guards the task
    Task task_;
};

}  // namespace

WorkerPool::WorkerPool(std::chrono::milliseconds quiet)
{
    for (std::size_t i = 0; i < pools_.size(); ++i) {
        pools_[i] = std::make_unique<QThreadPool>();
        pools_[i]->setMaxThreadCount(limits[i]);
        pools_[i]->setExpiryTimeout(static_cast<int>(quiet.count()));
    }
}

WorkerPool::~WorkerPool()
{
    if (shutDown(std::chrono::milliseconds(0))) return;
    for (auto& pool : pools_) (void)pool.release();  // its end would wait for the busy ones
}

void WorkerPool::post(QualityOfService quality, Task task)
{
    const std::lock_guard lock(mutex_);
    if (!isShutDown_) pools_[static_cast<std::size_t>(quality)]->start(std::move(task));
}

std::shared_ptr<DelayedTask> WorkerPool::postAfter(QualityOfService quality, std::chrono::milliseconds delay,
                                                   Task task)
{
    auto delayed = std::make_shared<CancellableTask>(std::move(task));
    const QDeadlineTimer due(delay, Qt::PreciseTimer);
    QMetaObject::invokeMethod(&timing_, [this, quality, due, delayed] {
        auto* timer = new QTimer(&timing_);
        timer->setTimerType(Qt::PreciseTimer);
        QObject::connect(timer, &QTimer::timeout, timer, [this, timer, quality, delayed] {
            timer->stop();
            timer->deleteLater();
            if (!delayed->isCancelled()) post(quality, [delayed] { delayed->run(); });
        });
        timer->start(std::chrono::milliseconds(due.remainingTime()));
    });
    return delayed;
}

bool WorkerPool::shutDown(std::chrono::milliseconds limit)
{
    {
        const std::lock_guard lock(mutex_);
        isShutDown_ = true;
    }
    const QDeadlineTimer end(limit);
    for (auto& pool : pools_) pool->clear();
    bool areGone = true;
    for (auto& pool : pools_) areGone &= pool->waitForDone(static_cast<int>(end.remainingTime()));
    return areGone;
}

}  // namespace sonvara
