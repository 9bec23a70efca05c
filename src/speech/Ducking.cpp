// The speech manager's ducking: the player is lowered while the DJ speaks and put back afterwards.
// The bookkeeping stays on the main thread; the commands, which block, run on workers.
#include "ports/GlobalQueue.h"
#include "ports/MainQueue.h"
#include "ports/Platform.h"
#include "speech/PlayerVolume.h"
#include "speech/SpeechManager.h"

#include <utility>

namespace sonvara {

void SpeechManager::duck(const std::string& source)
{
    if (duckedSource_) return;  // lowered already: the volume to go back to is the first one read
    auto& platform = platform_;
    platform.globalQueue.post(QualityOfService::userInitiated, [weak = weak_from_this(), source, &platform] {
        const auto volume = PlayerVolume::read(platform.scriptRunner, source);
        if (!volume) return;
        PlayerVolume::set(platform.scriptRunner, source, PlayerVolume::ducked(*volume));
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
                                   PlayerVolume::set(scripts, source, volume);
                               });
}

}  // namespace sonvara
