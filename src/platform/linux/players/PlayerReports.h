// The language that the system shares with its two players: their names, what a poll asks, and how they report.
#pragma once

#include "platform/linux/players/PlayerIdentity.h"
#include "platform/linux/players/PlayerState.h"
#include "ports/NotificationCenter.h"

#include <optional>
#include <string>
#include <string_view>

namespace sonvara {

/// The name by which scripts address the player.
[[nodiscard]] std::string_view nameOf(PlayerKind kind);

/// The player whose current track the script `source` asks for; absent unless it is a poll, byte for byte.
[[nodiscard]] std::optional<PlayerKind> polledPlayer(std::string_view source);

/// What a poll of the player answers: the fields of its track, or the word for having none.
[[nodiscard]] std::string pollAnswer(PlayerKind kind, const PlayerSnapshot& snapshot);

/// The notification by which the player tells of a change.
[[nodiscard]] Notification notificationOf(PlayerKind kind, const PlayerSnapshot& snapshot);

}  // namespace sonvara
