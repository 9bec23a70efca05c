#include "ui/ChangeSignal.h"

#include "ports/Queues.h"

#include <utility>

namespace sonvara {

std::shared_ptr<ChangeSignal> ChangeSignal::create(MainQueue& mainQueue, std::function<void()> changed)
{
    return std::shared_ptr<ChangeSignal>(new ChangeSignal(mainQueue, std::move(changed)));
}

ChangeSignal::ChangeSignal(MainQueue& mainQueue, std::function<void()> changed)
    : mainQueue_(mainQueue),
      changed_(std::move(changed))
{}

void ChangeSignal::raise()
{
    if (std::exchange(isRaised_, true)) return;
    mainQueue_.post([weak = weak_from_this()] {
        const auto signal = weak.lock();
        if (!signal) return;
        signal->isRaised_ = false;
        signal->changed_();
    });
}

Subscription ChangeSignal::handle()
{
    return Subscription(
        [signal = shared_from_this()] {});  // the handle holds the signal, and that its sources
}

}  // namespace sonvara
