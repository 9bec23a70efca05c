#include "platform/linux/system/QtMainQueue.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <deque>
#include <mutex>
#include <utility>

namespace sonvara {

// Holds the tasks; each posted event stands for one of them, whichever is the first by then.
class QtMainQueue::Receiver final : public QObject {
public:
    void add(Task task)
    {
        {
            const std::lock_guard lock(mutex_);
            tasks_.push_back(std::move(task));
        }
        // Without the lock: the main thread wakes at once, and would have to wait for it.
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    }

    void customEvent(QEvent* /*event*/) override { takeFirst()(); }

private:
    Task takeFirst()
    {
        const std::lock_guard lock(mutex_);
        Task task = std::move(tasks_.front());
        tasks_.pop_front();
        return task;
    }

    std::mutex mutex_;  // guards the tasks
    std::deque<Task> tasks_;
};

class QtMainQueue::Timer final : public RepeatingTimer, public std::enable_shared_from_this<Timer> {
public:
    Timer(QtMainQueue& queue, std::chrono::milliseconds interval, Task action)
        : queue_(&queue),
          action_(std::make_shared<const Task>(std::move(action)))
    {
        timer_.setTimerType(Qt::CoarseTimer);
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { fire(); });
        timer_.start(interval);
    }

    void invalidate() override
    {
        timer_.stop();
        action_.reset();
        if (auto* const queue = std::exchange(queue_, nullptr)) queue->timers_.erase(shared_from_this());
    }

private:
    void fire()
    {
        const auto self = shared_from_this();
        const auto action = action_;  // both survive an action that invalidates its own timer
        (*action)();
    }

    QtMainQueue* queue_;  // null once invalidated
    std::shared_ptr<const Task> action_;
    QTimer timer_;
};

QtMainQueue::QtMainQueue() : receiver_(std::make_unique<Receiver>()) {}

QtMainQueue::~QtMainQueue()
{
    while (!timers_.empty()) (*timers_.begin())->invalidate();
}

void QtMainQueue::post(Task task)
{
    receiver_->add(std::move(task));
}

std::shared_ptr<RepeatingTimer> QtMainQueue::scheduleTimer(std::chrono::milliseconds interval, Task action)
{
    auto timer = std::make_shared<Timer>(*this, interval, std::move(action));
    timers_.insert(timer);
    return timer;
}

}  // namespace sonvara
