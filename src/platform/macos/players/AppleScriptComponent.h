// The system's AppleScript component.
#pragma once

#include "platform/macos/players/ScriptComponent.h"

#include <mutex>

namespace sonvara {

/// The component is not thread safe, so one lock lets one script through at a time. A script that has to wait for the
/// user's consent would keep it for as long; so consent is asked for before, outside of the lock. Once it is denied,
/// scripts fail at once and nobody is asked again. To be made once.
class AppleScriptComponent final : public ScriptComponent {
public:
    [[nodiscard]] bool isInstalled(const std::string& player) override;
    void awaitConsent(const std::string& player) override;
    [[nodiscard]] ScriptResult execute(const std::string& source) override;

private:
    std::mutex component_;
};

}  // namespace sonvara
