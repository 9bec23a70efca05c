#include "platform/linux/players/PlayerNotificationCenter.h"

#include <utility>

namespace sonvara {

Subscription PlayerNotificationCenter::addObserver(const std::string& name,
                                                   std::function<void(const Notification&)> observer)
{
    auto live = std::make_shared<std::atomic<bool>>(true);
    observers_.push_back(std::make_shared<const Observer>(Observer{name, std::move(observer), live}));
    return Subscription([live = std::move(live)] { live->store(false); });
}

void PlayerNotificationCenter::post(const Notification& notification)
{
    std::erase_if(observers_, [](const auto& each) { return !each->live->load(); });
    const auto observers = observers_;  // an observer may add others
    for (const auto& each : observers)
        if (each->name == notification.name && each->live->load()) each->call(notification);
}

}  // namespace sonvara
