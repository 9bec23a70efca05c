#include "volume/ScriptVolumePrograms.h"

#include "ports/ScriptRunner.h"
#include "support/PlayerScripts.h"

namespace sonvara {
namespace {

/// A bare command would start an application that does not run, and wait two minutes for one that hangs: too
/// long on the way out, where these scripts run on the main thread. Without an answer the number is 0, so the
/// text tells whether there was one.
std::string ifRunning(const std::string& program, const std::string& command)
{
    return "with timeout of 2 seconds\n    if application \"" + program + "\" is running then " + command +
           "\nend timeout";
}

}  // namespace

std::optional<int> ScriptVolumePrograms::volume(const std::string& program)
{
    const auto result = scripts_.run(ifRunning(program, volumeScript({program, std::nullopt})));
    if (!result.created || result.error || !result.text) return std::nullopt;
    return result.integer;
}

bool ScriptVolumePrograms::setVolume(const std::string& program, int volume)
{
    const auto result = scripts_.run(ifRunning(program, volumeScript({program, volume})));
    return result.created && !result.error;
}

}  // namespace sonvara
