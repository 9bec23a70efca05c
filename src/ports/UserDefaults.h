// Port: the store of the user's settings, and which settings there are: keys, types and defaults.
#pragma once

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

/// A key of the settings store and the value that every reader takes when nothing is stored there.
/// Defaults are never written to the store.
template <typename T>
struct Setting {
    const char* key;
    T whenAbsent;
};

namespace settings {

/// Tracks are announced at all.
inline constexpr Setting<bool> announcementsEnabled{"announcementsEnabled", true};
/// The player is lowered while the DJ speaks.
inline constexpr Setting<bool> duckMusic{"duckMusic", true};
/// Intros are written by a command-line AI tool.
inline constexpr Setting<bool> aiIntros{"aiIntros", false};
/// Which tool: the raw value of an `AIProvider`.
inline constexpr Setting<const char*> aiProvider{"aiProvider", "claudeCLI"};

}  // namespace settings

/// The stored Boolean, or the setting's default when nothing is stored under its key.
inline bool read(const UserDefaults& defaults, const Setting<bool>& setting)
{
    return defaults.hasObject(setting.key) ? defaults.boolForKey(setting.key) : setting.whenAbsent;
}

}  // namespace sonvara
