// The speech manager lowers the player. The bookkeeping stays on the main thread; the commands, which block, run on
// workers.
#include "ports/Platform.h"
#include "ports/Queues.h"
#include "ports/ScriptRunner.h"
#include "speech/SpeechManager.h"
#include "support/PlayerScripts.h"

#include <algorithm>
#include <utility>

namespace sonvara {
namespace {

constexpr double duckFactor = 0.35;
constexpr int lowestDuckedVolume =
    12;  // a quieter player is even turned up: the way back is the same for all

int duckedVolume(int volume)
{
    return std::max(static_cast<int>(volume * duckFactor), lowestDuckedVolume);
}

}  // namespace

std::optional<int> SpeechManager::playerVolume(ScriptRunner& scripts, const std::string& source)
{
    const auto result = scripts.run(volumeScript({source, std::nullopt}));
    if (!result.created || result.error) return std::nullopt;
    return result.integer;
}

void SpeechManager::setPlayerVolume(ScriptRunner& scripts, const std::string& source, int volume)
{
    (void)scripts.run(volumeScript({source, std::clamp(volume, 0, 100)}));
}

void SpeechManager::duck(const std::string& source)
{
    if (duckedSource_) return;  // lowered already: the volume to go back to is the first one read
    auto& platform = platform_;
    platform.globalQueue.post(QualityOfService::userInitiated, [weak = weak_from_this(), source, &platform] {
        const auto volume = playerVolume(platform.scriptRunner, source);
        if (!volume) return;
        setPlayerVolume(platform.scriptRunner, source, duckedVolume(*volume));
        platform.mainQueue.post([weak, source, volume] {
            const auto manager = weak.lock();
            if (!manager) return;
            manager->duckedSource_ = source;
            manager->preDuckVolume_ = volume;
        });
    });
}

void SpeechManager::restoreVolume()
{
    if (!duckedSource_ || !preDuckVolume_) return;
    auto& scripts = platform_.scriptRunner;
    platform_.globalQueue.post(QualityOfService::userInitiated,
                               [&scripts, source = *std::exchange(duckedSource_, std::nullopt),
                                volume = *std::exchange(preDuckVolume_, std::nullopt)] {
                                   setPlayerVolume(scripts, source, volume);
                               });
}

}  // namespace sonvara
