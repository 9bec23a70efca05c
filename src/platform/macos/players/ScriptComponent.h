// What the system does for scripts to the players.
#pragma once

#include "ports/ScriptRunner.h"

#include <string>

namespace sonvara {

/// Any thread but the main one; every operation may block. A player is meant by its name.
class ScriptComponent {
public:
    virtual ~ScriptComponent() = default;

    /// Whether the player's application is on this Mac. A script that names one which is not would have the system
    /// ask the user where it is.
    [[nodiscard]] virtual bool isInstalled(const std::string& player) = 0;

    /// Returns when the user has said whether the player may be controlled, which they are asked once; at once for a
    /// player that does not run.
    virtual void awaitConsent(const std::string& player) = 0;

    /// Runs a script. Only one runs at a time: a further one waits for its end.
    [[nodiscard]] virtual ScriptResult execute(const std::string& source) = 0;
};

}  // namespace sonvara
