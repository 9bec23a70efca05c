#include "platform/linux/players/ScriptCommand.h"

#include "support/PlayerScripts.h"

#include <utility>

namespace sonvara {
namespace {

std::string_view truthValue(bool value)
{
    return value ? "true" : "false";
}

}  // namespace

std::optional<ScriptCommand> recognise(std::string_view source)
{
    if (source == musicPollScript()) return ScriptCommand{PlayerKind::music};
    if (source == spotifyPollScript()) return ScriptCommand{PlayerKind::spotify};
    return std::nullopt;
}

std::string_view nameOf(PlayerKind player)
{
    return player == PlayerKind::music ? musicSource : spotifySource;
}

ScriptResult pollAnswer(PlayerKind player, const Picture& picture)
{
    if (!picture.hasTrack()) return pollFailure();
    std::string text;
    text.append(picture.title).append("||").append(picture.artist).append("||").append(picture.album);
    text.append("||").append(truthValue(picture.status == PlaybackStatus::playing));
    if (player == PlayerKind::music) text.append("||").append(truthValue(picture.loved));
    return ScriptResult::ofText(std::move(text));
}

ScriptResult notRunningAnswer()
{
    return ScriptResult::ofText("notrunning");
}

ScriptResult pollFailure()
{
    return ScriptResult::ofText("error");
}

}  // namespace sonvara
