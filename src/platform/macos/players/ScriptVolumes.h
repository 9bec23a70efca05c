// The volumes of the players that are addressed by scripts.
#pragma once

#include "volume/VolumePlayers.h"

#include <map>
#include <optional>
#include <string>

namespace sonvara {

class LoweredPlayers;
class MainQueue;
class ScriptLanes;

/// Here a player's name always means the same program, and its runs are not told apart: whether it runs is
/// part of each look. One player's scripts run in the order in which they are asked for; one that waits for a slow
/// player, or for the user's consent, holds up that player's later ones and nobody else.
class ScriptVolumes final : public VolumePlayers {
public:
    /// Both must outlive this, and this the scripts.
    ScriptVolumes(ScriptLanes& scripts, MainQueue& mainQueue) : scripts_(scripts), mainQueue_(mainQueue) {}

    /// From now on `loweredPlayers` is told of the players. It must outlive the main queue's tasks.
    void reportTo(LoweredPlayers& loweredPlayers);

    [[nodiscard]] PlayerRun meant(const std::string& player) override;
    /// Sends the core's command as it is, whether the player runs or not.
    void read(PlayerRun run, const Answer& answer) override;
    void look(PlayerRun run, const Answer& answer) override;
    void tell(PlayerRun run, double volume) override;

private:
    void take(PlayerRun run, const std::optional<VolumeLook>& look, const Answer& answer);

    ScriptLanes& scripts_;
    MainQueue& mainQueue_;
    LoweredPlayers* loweredPlayers_ = nullptr;
    std::map<PlayerRun, bool> isRunning_;  ///< as last seen; main thread
};

}  // namespace sonvara
