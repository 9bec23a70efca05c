// Port: the store of the user's settings.
#pragma once

#include "support/Setting.h"
#include "support/Subscription.h"

#include <functional>
#include <optional>
#include <string>

namespace sonvara {

/// The settings store. Reads from any thread, writes and subscriptions on the main thread. Values
/// outlive the process; a store that cannot be written keeps them for the life of the process.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    /// Whether any value at all is stored under `key`.
    [[nodiscard]] virtual bool hasObject(const std::string& key) const = 0;
    /// The Boolean under `key`; false when there is none or it is no Boolean.
    [[nodiscard]] virtual bool boolForKey(const std::string& key) const = 0;
    /// The string under `key`, if there is one.
    [[nodiscard]] virtual std::optional<std::string> stringForKey(const std::string& key) const = 0;

    virtual void setBool(const std::string& key, bool value) = 0;
    virtual void setString(const std::string& key, const std::string& value) = 0;

    /// Calls `changed` on the main thread after any value changed, here or in another process.
    [[nodiscard]] virtual Subscription onChange(std::function<void()> changed) = 0;
};

/// The stored Boolean, or the setting's default when nothing is stored under its key.
inline bool read(const UserDefaults& defaults, const Setting<bool>& setting)
{
    return defaults.hasObject(setting.key) ? defaults.boolForKey(setting.key) : setting.whenAbsent;
}

}  // namespace sonvara
