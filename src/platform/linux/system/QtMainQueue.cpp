#include "platform/linux/system/QtMainQueue.h"

#include <QTimer>
#include <utility>

namespace sonvara {

class QtMainQueue::Timer final : public RepeatingTimer, public std::enable_shared_from_this<Timer> {
public:
    Timer(QtMainQueue& queue, std::chrono::milliseconds interval, Task action)
        : queue_(&queue),
          action_(std::make_shared<const Task>(std::move(action)))
    {
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
    QTimer timer_;  // a coarse one, as all are that are told nothing else
};

QtMainQueue::~QtMainQueue()
{
    while (!timers_.empty()) (*timers_.begin())->invalidate();
}

void QtMainQueue::post(Task task)
{
    tasks_.post(std::move(task));
}

std::shared_ptr<RepeatingTimer> QtMainQueue::scheduleTimer(std::chrono::milliseconds interval, Task action)
{
    auto timer = std::make_shared<Timer>(*this, interval, std::move(action));
    timers_.insert(timer);
    return timer;
}

}  // namespace sonvara
