// Turns the changing picture of one of the two players into the notifications that it posts.
#pragma once

#include "platform/linux/players/PlayerIdentity.h"
#include "platform/linux/players/PlayerState.h"
#include "platform/linux/players/Settler.h"
#include "ports/NotificationCenter.h"

#include <chrono>
#include <optional>
#include <utility>

namespace sonvara {

/// The notification by which the player `kind` tells of `picture`.
[[nodiscard]] Notification notificationOf(PlayerKind kind, const Picture& picture);

/// One notification for each change, at once. Only a player that changes without end is told of by
/// its latest picture, a few times a second: nobody hears titles at such a speed, and each one costs
/// the system a question to both players. Time comes from the caller and never runs backwards.
class PictureFeed {
public:
    /// How many changes are told at once, and how long each of them counts against the next ones.
    static constexpr int burst = 10;
    static constexpr std::chrono::milliseconds interval{50};

    explicit PictureFeed(PlayerKind kind) : kind_(kind) {}

    [[nodiscard]] PlayerKind kind() const { return kind_; }

    /// Takes `picture` as already told.
    void begin(Picture picture) { told_ = std::move(picture); }

    /// What is to be posted now that the player's picture is `picture`. If a change must wait for
    /// its turn, `deadline` says when to call this again.
    [[nodiscard]] std::optional<Notification> follow(const Picture& picture, Time now);
    [[nodiscard]] std::optional<Time> deadline() const { return deadline_; }

private:
    PlayerKind kind_;
    Picture told_;
    Time used_{};  // how far the changes told so far would reach, one in each interval
    std::optional<Time> deadline_;
};

}  // namespace sonvara
