// Sees to it that a player that was lowered gets its volume back, and that the duck is heard while the DJ
// speaks.
#pragma once

#include "volume/LoweredNotes.h"
#include "volume/LoweredPlayer.h"
#include "volume/VolumePlayers.h"

#include <atomic>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace sonvara {

/// The one rule: a player is low exactly while the core's last word on it was a duck and a line is under way;
/// else it is to be at home. It is applied after each event, so nothing waits for anything, in whatever order
/// the core's commands, the lines' ends and the players' answers come. `LoweredPlayer` says what that means
/// for one player.
///
/// A player's home and low are remembered as a note from before it is told anything until it is free. The
/// note of a player that goes is kept for the next one of the same stable name, for thirty days.
///
/// It begins with the core's first script. Reads wait until the notes of the process before are there: what a
/// player tells without them may be what that process has told it.
///
/// Main thread only; pure but for what the surroundings do. It must outlive the players' answers.
class LoweredPlayers {
public:
    struct Surroundings {
        std::function<VolumeTime()> now;
        std::function<int()> today;  ///< in days since 1970
        /// What is to outlive the process. Must not wait for a disk.
        std::function<void(const LoweredNotes&)> keep;
        /// Asks for what the process before has kept: `remember` brings it. Must not wait for a disk either.
        std::function<void()> recall;
        /// Asks for a `wake` at that time; the latest request counts, and a wake too many does no harm.
        std::function<void(VolumeTime)> wakeAt;
    };

    /// A volume that the core has read, and on whom.
    struct Reading {
        PlayerRun run = 0;
        double volume = 0;
        bool wasPlaying = true;

        [[nodiscard]] int percent() const;
    };
    using ReadAnswer = std::function<void(const std::optional<Reading>&)>;

    static constexpr int daysOfNotes = 30;

    /// `players` must outlive this.
    LoweredPlayers(VolumePlayers& players, Surroundings surroundings)
        : players_(players),
          surroundings_(std::move(surroundings))
    {}

    /// The notes of the process before, once.
    void remember(const LoweredNotes& notes);

    /// A player has come to be there, and this is its stable name. Does nothing for one that is known.
    void appeared(PlayerRun run, const std::string& name);
    void gone(PlayerRun run);
    /// See `LoweredPlayer::hear`; with nothing but the run: something may have changed.
    void heard(PlayerRun run, std::optional<bool> isPlaying = {},
               const std::optional<std::string>& track = {});
    /// The players have been asked what they play: those that are owed their volume are looked at.
    void polled();
    /// Whether `look` is to be repeated before it counts.
    [[nodiscard]] bool mayMislead(PlayerRun run, const VolumeLook& look) const;
    /// Any thread: whether `polled` has anything to do, as it has until the notes are there.
    [[nodiscard]] bool owesAnything() const { return owesAnything_; }
    void wake();

    /// The core reads the volume of `player`. Answers with its user's choice, also while it is lowered; with
    /// nothing if it cannot be told.
    void read(const std::string& player, const ReadAnswer& answer);
    /// The core lowers `player`, on whom it has read its volume, to `percent`.
    void duck(const std::string& player, const Reading& reading, int percent);
    /// The core puts `player` back.
    void restore(const std::string& player);

    void lineBegan();
    void lineEnded();

    /// The program ends: every player is told its volume, and none is lowered any more.
    void end();
    /// Whether every player has shown what it made of the last command.
    [[nodiscard]] bool isSettled() const;

private:
    struct Known {
        std::string name;
        LoweredPlayer player;
        int commands = 0;  ///< told so far
        bool isLooking = false;
        int commandsAtLook = 0;  ///< before the look that is under way: an older one decides nothing
    };
    struct Duck {
        std::string player;
        PlayerRun run{};
        VolumeLevels levels;
    };

    void begin();
    void takeNote(PlayerRun run, Known& known);
    void take(PlayerRun run, const std::optional<VolumeLook>& answer);
    void see(PlayerRun run, Known& known, const VolumeLook& look);
    void look(PlayerRun run, Known& known);
    [[nodiscard]] bool isDucked(PlayerRun run) const { return ducked_.run == run; }
    void considerDuck(PlayerRun run, Known& known);
    void lowerIfUnmoved(Known& known, double volume);
    void apply();
    void act();
    void keepNotes();

    VolumePlayers& players_;
    Surroundings surroundings_;
    std::map<PlayerRun, Known> known_;
    LoweredNotes away_;  ///< of players that are not there
    LoweredNotes kept_;
    Duck ducked_;    ///< the core's last word, if it was a duck
    int lines_ = 0;  ///< handed over and not ended
    bool hasBegun_ = false;
    bool hasNotes_ = false;
    std::vector<std::function<void()>> untilNotes_;  ///< reads that wait for them
    bool isEnding_ = false;
    std::atomic<bool> owesAnything_ = true;
};

}  // namespace sonvara
