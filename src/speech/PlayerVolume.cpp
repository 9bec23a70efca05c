#include "speech/PlayerVolume.h"

#include "platform/ScriptRunner.h"

#include <algorithm>

namespace sonvara {
namespace {

constexpr double duckFactor = 0.35;
constexpr int lowestDuckedVolume = 12;

}  // namespace

std::string PlayerVolume::readCommand(const std::string& source)
{
    return "tell application \"" + source + "\" to get sound volume";
}

std::string PlayerVolume::setCommand(const std::string& source, int volume)
{
    return "tell application \"" + source + "\" to set sound volume to " + std::to_string(volume);
}

int PlayerVolume::ducked(int volume)
{
    return std::max(static_cast<int>(volume * duckFactor), lowestDuckedVolume);
}

std::optional<int> PlayerVolume::read(ScriptRunner& scripts, const std::string& source)
{
    const auto result = scripts.run(readCommand(source));
    if (!result.created || result.error) return std::nullopt;
    return result.integer;
}

void PlayerVolume::set(ScriptRunner& scripts, const std::string& source, int volume)
{
    (void)scripts.run(setCommand(source, std::clamp(volume, 0, 100)));
}

}  // namespace sonvara
