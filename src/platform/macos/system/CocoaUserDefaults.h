// The standard user-defaults store.
#pragma once

#include "ports/UserDefaults.h"

#include <memory>

namespace sonvara {

/// Hears of changes in this process for every key. The system tells of changes by other processes
/// key by key only, so those are heard for each key from the time it is first used.
class CocoaUserDefaults final : public UserDefaults {
public:
    CocoaUserDefaults();
    ~CocoaUserDefaults() override;

    [[nodiscard]] bool hasObject(const std::string& key) const override;
    [[nodiscard]] bool boolForKey(const std::string& key) const override;
    [[nodiscard]] std::optional<std::string> stringForKey(const std::string& key) const override;
    void setBool(const std::string& key, bool value) override;
    void setString(const std::string& key, const std::string& value) override;
    /// Main thread: waits until what was set is with the system, for a process that is about to end.
    void synchronize();
    [[nodiscard]] Subscription onChange(std::function<void()> changed) override;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace sonvara
