// Limits how often the changes of one of the two players are told.
#pragma once

#include "platform/linux/players/Debounce.h"
#include "platform/linux/players/PlayerState.h"

#include <chrono>
#include <optional>

namespace sonvara {

/// Every change is told at once, except that of a player that changes without end only the latest snapshot
/// is told, a few times a second: nobody can follow titles at such a speed, and each notification starts a
/// poll. Time comes from the caller and never runs backwards.
class NotificationThrottle {
public:
    /// How many changes are told at once, and how long each of them counts against the next ones.
    static constexpr int burst = 10;
    static constexpr std::chrono::milliseconds interval{50};

    /// Whether the player is now to be told as `snapshot`. If a change must wait, `deadline` says when to ask again.
    [[nodiscard]] bool admits(const PlayerSnapshot& snapshot, Time now);
    [[nodiscard]] std::optional<Time> deadline() const { return deadline_; }

private:
    PlayerSnapshot told_;
    Time used_{};  // how far the changes told so far would reach, one in each interval
    std::optional<Time> deadline_;
};

}  // namespace sonvara
