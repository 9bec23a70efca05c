#include "platform/linux/system/WorkerPool.h"

#include "platform/linux/system/Workers.h"

#include <optional>
#include <utility>

namespace sonvara {

namespace {

// A task that exactly one of two parties gets: the worker that runs it or whoever cancels it.
class CancellableTask final : public DelayedTask {
public:
    CancellableTask(Task task, std::weak_ptr<DelayTimer> timer)
        : task_(std::move(task)),
          timer_(std::move(timer))
    {}

    void setTicket(DelayTimer::Ticket ticket)
    {
        const std::lock_guard lock(mutex_);
        ticket_ = ticket;
    }

    void cancel() override
    {
        const Task dropped = take();
        const auto timer = timer_.lock();
        if (const auto ticket = takeTicket(); timer && ticket) timer->cancel(*ticket);
    }

    void run()
    {
        if (const Task task = take()) task();
    }

private:
    Task take()
    {
        const std::lock_guard lock(mutex_);
        return std::exchange(task_, nullptr);
    }

    std::optional<DelayTimer::Ticket> takeTicket()
    {
        const std::lock_guard lock(mutex_);
        return std::exchange(ticket_, std::nullopt);
    }

    std::mutex mutex_;  // guards the task and the ticket
    Task task_;
    std::optional<DelayTimer::Ticket> ticket_;
    const std::weak_ptr<DelayTimer> timer_;
};

}  // namespace

WorkerPool::WorkerPool(std::chrono::milliseconds quietWhile)
    : workers_(std::make_shared<Workers>(quietWhile)),
      timer_(std::make_shared<DelayTimer>())
{}

WorkerPool::~WorkerPool()
{
    shutDown(std::chrono::milliseconds(0));
}

void WorkerPool::post(QualityOfService quality, Task task)
{
    workers_->post(quality, std::move(task));
}

std::shared_ptr<DelayedTask> WorkerPool::postAfter(QualityOfService quality, std::chrono::milliseconds delay,
                                                   Task task)
{
    auto delayed = std::make_shared<CancellableTask>(std::move(task), timer_);
    delayed->setTicket(
        timer_->schedule(delay, [workers = std::weak_ptr<Workers>(workers_), quality, delayed] {
            if (const auto pool = workers.lock()) pool->post(quality, [delayed] { delayed->run(); });
        }));
    return delayed;
}

bool WorkerPool::shutDown(std::chrono::milliseconds limit)
{
    timer_->shutDown();
    return workers_->shutDown(limit);
}

std::size_t WorkerPool::threadCount() const
{
    return workers_->threadCount();
}

}  // namespace sonvara
