// The observers of the players' notifications.
#pragma once

#include "ports/NotificationCenter.h"

#include <atomic>
#include <memory>
#include <vector>

namespace sonvara {

/// Hands notifications to their observers. Main thread, except that handles may be dropped anywhere;
/// the observer itself is destroyed on the main thread, with a later notification or with the center.
class PlayerNotificationCenter final : public NotificationCenter {
public:
    [[nodiscard]] Subscription addObserver(const std::string& name,
                                           std::function<void(const Notification&)> observer) override;

    /// Calls the observers of the notification's name in order of registration.
    void post(const Notification& notification);

private:
    struct Observer {
        std::string name;
        std::function<void(const Notification&)> call;
        std::shared_ptr<std::atomic<bool>> live;
    };
    std::vector<std::shared_ptr<const Observer>> observers_;
};

}  // namespace sonvara
