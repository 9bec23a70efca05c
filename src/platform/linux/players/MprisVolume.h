// The volumes of the players on the bus.
#pragma once

#include "platform/linux/players/MprisBus.h"
#include "platform/linux/players/PlayerDirectory.h"
#include "volume/VolumePlayers.h"

#include <QObject>

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace sonvara {

class LoweredPlayers;

/// A run is one connection to the bus, as the directory knows it. Always asks the player itself: what players
/// signal of their volume may be late or missing, so a signal is only a reason to ask. A player without an
/// answer within the limit of the bus has none.
///
/// A volume of 0 is read again for a while: on PipeWire a new stream has no volume at first, and some players
/// tell 0. So is one that `LoweredPlayers` does not believe yet.
class MprisVolume final : public QObject, public VolumePlayers {
public:
    MprisVolume(MprisBus& bus, const PlayerDirectory& directory);

    /// From now on `loweredPlayers` is told of the players that are there, come, go and change. It must outlive the
    /// events.
    void reportTo(LoweredPlayers& loweredPlayers) { loweredPlayers_ = &loweredPlayers; }

    [[nodiscard]] PlayerRun meant(const std::string& player) override;
    void read(PlayerRun run, const Answer& answer) override;
    void look(PlayerRun run, const Answer& answer) override;
    void tell(PlayerRun run, double volume) override;

protected:
    void customEvent(QEvent* event) override;

private:
    void read(PlayerRun run, const Answer& answer, int repeats);
    void ask(PlayerRun run, const Answer& answer);
    PlayerRun report(const Player& player);
    void takeOwnerChange(const std::string& now);
    void takeState(const std::string& owner, const StateChange& state);

    MprisBus& bus_;
    const PlayerDirectory& directory_;
    LoweredPlayers* loweredPlayers_ = nullptr;
    std::map<PlayerRun, std::string> owners_;          ///< of the runs that were reported
    std::vector<std::pair<PlayerRun, Answer>> looks_;  ///< to be begun
};

}  // namespace sonvara
