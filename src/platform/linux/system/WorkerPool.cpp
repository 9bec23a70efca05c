#include "platform/linux/system/WorkerPool.h"

#include <QDeadlineTimer>
#include <QTimer>

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <pthread.h>
#include <system_error>
#include <thread>
#include <utility>

namespace sonvara {

namespace {

constexpr std::array<std::size_t, 3> limits{64, 16,
                                            16};  // how many tasks may run at once, by quality of service

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

/// The workers of one quality of service. They are threads of ours, for one of Qt's makes itself an event loop: that
/// takes descriptors, and without any the program would end.
class WorkerPool::Lane {
public:
    Lane(std::size_t limit, std::chrono::milliseconds quiet) : limit_(limit), quiet_(quiet) {}

    // Waits for the workers, after `close`.
    ~Lane()
    {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return workers_ == 0; });
    }

    void post(Task task)
    {
        std::unique_lock lock(mutex_);
        if (isClosed_) return;
        tasks_.push_back(std::move(task));
        if (idle_ >= tasks_.size()) {
            lock.unlock();  // the worker wakes at once, and would have to wait for it
            changed_.notify_one();
        } else if (workers_ < limit_) {
            start();
        }
    }

    void close()
    {
        std::deque<Task> dropped;  // destroyed without the lock
        const std::lock_guard lock(mutex_);
        isClosed_ = true;
        dropped.swap(tasks_);
        changed_.notify_all();
    }

    bool waitForDone(std::chrono::steady_clock::time_point end)
    {
        std::unique_lock lock(mutex_);
        return changed_.wait_until(lock, end, [this] { return workers_ == 0; });
    }

private:
    // With the lock held.
    void start()
    {
        try {
            std::thread([this] { work(); }).detach();
            ++workers_;
        } catch (const std::system_error&) {
            // The task waits for a worker that is there, or for the next task.
        }
    }

    void work()
    {
        ::pthread_setname_np(::pthread_self(), "worker");
        std::unique_lock lock(mutex_);
        while (waitForTask(lock)) {
            Task task = std::move(tasks_.front());
            tasks_.pop_front();
            lock.unlock();
            task();
            task = nullptr;
            lock.lock();
        }
        --workers_;
        changed_.notify_all();  // with the lock held: when it is released, this may go
    }

    // Whether there is one; else the worker is to leave.
    bool waitForTask(std::unique_lock<std::mutex>& lock)
    {
        ++idle_;
        changed_.wait_for(lock, quiet_, [this] { return isClosed_ || !tasks_.empty(); });
        --idle_;
        return !tasks_.empty();
    }

    const std::size_t limit_;
    const std::chrono::milliseconds quiet_;
    std::mutex mutex_;  // guards what follows
    std::condition_variable changed_;
    std::deque<Task> tasks_;
    std::size_t workers_ = 0;
    std::size_t idle_ = 0;
    bool isClosed_ = false;
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
    const auto end = std::chrono::steady_clock::now() + limit;
    for (auto& lane : lanes_) lane->close();
    bool areGone = true;
    for (auto& lane : lanes_) areGone &= lane->waitForDone(end);
    return areGone;
}

}  // namespace sonvara
