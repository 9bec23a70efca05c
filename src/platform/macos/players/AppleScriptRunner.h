// Scripts run by the system's AppleScript component.
#pragma once

#include "ports/ScriptRunner.h"

namespace sonvara {

/// The component is not thread safe, so one lock for the whole process lets one script through at a
/// time: a script that waits, for a slow player or for the user's consent, holds up the later ones.
/// Once consent is denied, scripts fail at once and nobody is asked again.
class AppleScriptRunner final : public ScriptRunner {
public:
    [[nodiscard]] ScriptResult run(const std::string& source) override;
};

}  // namespace sonvara
