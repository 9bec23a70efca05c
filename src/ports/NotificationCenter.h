// Port: the broadcasts of the music players.
#pragma once

#include "support/Subscription.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <variant>

namespace sonvara {

/// A value of a notification's dictionary; `monostate` stands for every type not listed.
using Variant = std::variant<std::monostate, bool, std::int64_t, double, std::string>;
using UserInfo = std::map<std::string, Variant>;

struct Notification {
    std::string name;
    std::optional<UserInfo> userInfo;
};

/// Delivers notifications that other programs post.
class NotificationCenter {
public:
    virtual ~NotificationCenter() = default;

    /// Main thread: calls `observer` on the main thread for each notification called `name`, from
    /// any sender, in the order in which they arrive, until the handle is dropped. The handle may be
    /// dropped on any thread; a delivery that has begun on the main thread is not waited for.
    [[nodiscard]] virtual Subscription addObserver(const std::string& name,
                                                   std::function<void(const Notification&)> observer) = 0;
};

}  // namespace sonvara
