// Reads and sets a player's own volume.
#pragma once

#include "platform/linux/players/MprisBus.h"
#include "platform/linux/players/PlayerDirectory.h"
#include "platform/linux/players/ScriptCommand.h"
#include "platform/linux/players/VolumeHold.h"
#include "support/Snapshot.h"

#include <QObject>
#include <QVariantList>

#include <functional>
#include <map>
#include <optional>
#include <string>

namespace sonvara::players {

/// Always asks the player itself: what players signal of their volume may be late or missing. Main
/// thread; answers come later or at once, exactly once.
///
/// A name like "Music" may mean another program a moment later. A volume is therefore set on the
/// program on which it was last read, so that what was lowered is what is raised again. A program that
/// undoes it at once is told once more.
class MprisVolume : public QObject {
public:
    using Answer = std::function<void(ScriptResult)>;

    MprisVolume(MprisBus& bus, const PlayerDirectory& directory);

    void read(PlayerKind kind, const Answer& answer);
    void set(PlayerKind kind, int volume, const Answer& answer);

    /// Any thread: the bus name of the program on which the volume of `player` was last read.
    [[nodiscard]] std::optional<std::string> lastReadProgram(const std::string& player) const;

private:
    using Programs = std::map<std::string, std::string>;  // the program's name on the bus by the player's

    [[nodiscard]] const Player* playerToSet(PlayerKind kind) const;
    void takeSignal(const std::string& owner, const QVariantList& arguments);

    MprisBus& bus_;
    const PlayerDirectory& directory_;
    Snapshot<Programs> lastRead_;  // by name, so that a player started anew is the same
    std::map<PlayerKind, VolumeHold> holds_;
};

}  // namespace sonvara::players
