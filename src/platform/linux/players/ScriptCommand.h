// The script texts that are understood, and what running them answers.
#pragma once

#include "platform/linux/players/PlayerIdentity.h"
#include "platform/linux/players/PlayerState.h"
#include "ports/ScriptRunner.h"

#include <optional>
#include <string>
#include <string_view>

namespace sonvara::players {

struct ScriptCommand {
    enum class Verb { poll, getVolume, setVolume };

    Verb verb = Verb::poll;
    PlayerKind player = PlayerKind::music;
    int volume = 0;  ///< 0 to 100; only for `setVolume`

    friend bool operator==(const ScriptCommand&, const ScriptCommand&) = default;
};

/// What `source` asks for; absent unless it is, byte for byte, one of the texts that the system
/// sends: per player one that tells the current track, one that reads the volume and one that sets
/// it to a decimal number from 0 to 100 without sign or leading zeros.
[[nodiscard]] std::optional<ScriptCommand> recognise(std::string_view source);

/// The name by which scripts address the player.
[[nodiscard]] std::string_view nameOf(PlayerKind player);

/// The answer to a poll: the fields of the picture, or "error" if there is no track.
[[nodiscard]] ScriptResult pollAnswer(PlayerKind player, const Picture& picture);
/// The answer to a poll of a player that does not run.
[[nodiscard]] ScriptResult notRunningAnswer();
/// The answer to a poll of a player that runs but says nothing of use.
[[nodiscard]] ScriptResult pollFailure();
[[nodiscard]] ScriptResult volumeAnswer(int volume);

}  // namespace sonvara::players
