// The script texts that are understood, and what running them answers.
#pragma once

#include "platform/linux/players/PlayerIdentity.h"
#include "platform/linux/players/PlayerState.h"
#include "ports/ScriptRunner.h"

#include <optional>
#include <string>
#include <string_view>

namespace sonvara {

struct ScriptCommand {
    PlayerKind player = PlayerKind::music;  ///< whose current track is asked for

    friend bool operator==(const ScriptCommand&, const ScriptCommand&) = default;
};

/// What `source` asks for; absent unless it is, byte for byte, one of the texts with which the system asks
/// for the current track, per player one.
[[nodiscard]] std::optional<ScriptCommand> recognise(std::string_view source);

/// The name by which scripts address the player.
[[nodiscard]] std::string_view nameOf(PlayerKind player);

/// The answer to a poll: the fields of the picture, or "error" if there is no track.
[[nodiscard]] ScriptResult pollAnswer(PlayerKind player, const Picture& picture);
/// The answer to a poll of a player that does not run.
[[nodiscard]] ScriptResult notRunningAnswer();
/// The answer to a poll of a player that runs but says nothing of use.
[[nodiscard]] ScriptResult pollFailure();

}  // namespace sonvara
