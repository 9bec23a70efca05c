// Notifications that other programs post through the system's distributed notification centre.
#pragma once

#include "ports/NotificationCenter.h"

namespace sonvara {

/// Registers with the centre's own default for what happens while the application is suspended.
class DistributedNotificationCenter final : public NotificationCenter {
public:
    [[nodiscard]] Subscription addObserver(const std::string& name,
                                           std::function<void(const Notification&)> observer) override;
};

}  // namespace sonvara
