#include "platform/linux/system/WorkerPool.h"

#include <QDeadlineTimer>
#include <QRunnable>
#include <QThreadPool>
#include <QTimer>

#include <cstddef>
#include <deque>
#include <mutex>
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

/// The workers of one quality of service. They are told that there is a task, and each takes the first one: so tasks
/// are handed over under a lock of ours, as a thread sanitizer does not see those within Qt.
class WorkerPool::Lane final : public QRunnable {
public:
    Lane(int limit, std::chrono::milliseconds quiet)
    {
        setAutoDelete(false);
        threads_.setMaxThreadCount(limit);
        threads_.setExpiryTimeout(static_cast<int>(quiet.count()));
    }

    void post(Task task)
    {
        const std::lock_guard lock(mutex_);
        if (isClosed_) return;
        tasks_.push_back(std::move(task));
        threads_.start(this);
    }

    void close()
    {
        std::deque<Task> dropped;  // destroyed without the lock
        const std::lock_guard lock(mutex_);
        isClosed_ = true;
        dropped.swap(tasks_);
    }

    bool waitForDone(const QDeadlineTimer& end)
    {
        return threads_.waitForDone(static_cast<int>(end.remainingTime()));
    }

    void run() override
    {
        std::unique_lock lock(mutex_);
        if (tasks_.empty()) return;  // closed
        const Task task = std::move(tasks_.front());
        tasks_.pop_front();
        lock.unlock();
        task();
    }

private:
    std::mutex mutex_;  // guards what follows
    std::deque<Task> tasks_;
    bool isClosed_ = false;
    QThreadPool threads_;
};

WorkerPool::WorkerPool(std::chrono::milliseconds quiet)
{
    for (std::size_t i = 0; i < lanes_.size(); ++i) lanes_[i] = std::make_unique<Lane>(limits[i], quiet);
}

WorkerPool::~WorkerPool()
{
    for (auto& lane : lanes_) lane->close();  // and then, with each, waits
}

void WorkerPool::post(QualityOfService quality, Task task)
{
    lanes_[static_cast<std::size_t>(quality)]->post(std::move(task));
}

std::shared_ptr<DelayedTask> WorkerPool::postAfter(QualityOfService quality, std::chrono::milliseconds delay,
                                                   Task task)
{
    auto delayed = std::make_shared<CancellableTask>(std::move(task));
    const QDeadlineTimer due(delay, Qt::PreciseTimer);
    timing_.post([this, quality, due, delayed] {
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
    const QDeadlineTimer end(limit);
    for (auto& lane : lanes_) lane->close();
    bool areGone = true;
    for (auto& lane : lanes_) areGone &= lane->waitForDone(end);
    return areGone;
}

}  // namespace sonvara
