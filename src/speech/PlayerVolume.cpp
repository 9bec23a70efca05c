#include "speech/PlayerVolume.h"

#include "ports/ScriptRunner.h"
#include "support/PlayerScripts.h"

#include <algorithm>

namespace sonvara {
namespace {

constexpr double duckFactor = 0.35;
constexpr int lowestDuckedVolume = 12;

}  // namespace

int PlayerVolume::ducked(int volume)
{
    return std::max(static_cast<int>(volume * duckFactor), lowestDuckedVolume);
}

std::optional<int> PlayerVolume::read(ScriptRunner& scripts, const std::string& source)
{
    const auto result = scripts.run(volumeScript({source, std::nullopt}));
    if (!result.created || result.error) return std::nullopt;
    return result.integer;
}

void PlayerVolume::set(ScriptRunner& scripts, const std::string& source, int volume)
{
    (void)scripts.run(volumeScript({source, std::clamp(volume, 0, 100)}));
}

}  // namespace sonvara
