#include "platform/linux/players/PlayerScripts.h"

#include <charconv>
#include <utility>

namespace sonvara::players {
namespace {

constexpr std::string_view musicPoll = R"(try
    tell application "Music"
        if it is running then
            set trackName to name of current track
            set artistName to artist of current track
            set albumName to album of current track
            set isPlaying to player state is playing
            set isFavorited to loved of current track
            return trackName & "||" & artistName & "||" & albumName & "||" & isPlaying & "||" & isFavorited
        else
            return "notrunning"
        end if
    end tell
on error
    return "error"
end try)";

constexpr std::string_view spotifyPoll = R"(try
    tell application "Spotify"
        if it is running then
            set trackName to name of current track
            set artistName to artist of current track
            set albumName to album of current track
            set isPlaying to player state is playing
            return trackName & "||" & artistName & "||" & albumName & "||" & isPlaying
        else
            return "notrunning"
        end if
    end tell
on error
    return "error"
end try)";

static_assert(musicPoll.size() == 543 && spotifyPoll.size() == 470, "the texts are fixed to the byte");

bool take(std::string_view& text, std::string_view start)
{
    if (!text.starts_with(start)) return false;
    text.remove_prefix(start.size());
    return true;
}

std::optional<int> parseVolume(std::string_view digits)
{
    if (digits.empty() || digits.size() > 3) return std::nullopt;
    if (digits.size() > 1 && digits.front() == '0') return std::nullopt;
    int value = 0;
    const auto* const end = digits.data() + digits.size();
    const auto parsed = std::from_chars(digits.data(), end, value);
    if (parsed.ec != std::errc{} || parsed.ptr != end || value < 0 || value > 100) return std::nullopt;
    return value;
}

ScriptResult textAnswer(std::string text)
{
    ScriptResult result;
    result.text = std::move(text);
    return result;
}

std::string_view truthValue(bool value)
{
    return value ? "true" : "false";
}

}  // namespace

std::optional<ScriptCommand> recognise(std::string_view source)
{
    using Verb = ScriptCommand::Verb;
    if (source == musicPoll) return ScriptCommand{Verb::poll, PlayerKind::music};
    if (source == spotifyPoll) return ScriptCommand{Verb::poll, PlayerKind::spotify};
    if (!take(source, "tell application \"")) return std::nullopt;
    auto player = PlayerKind::music;
    if (!take(source, nameOf(player))) {
        player = PlayerKind::spotify;
        if (!take(source, nameOf(player))) return std::nullopt;
    }
    if (source == "\" to get sound volume") return ScriptCommand{Verb::getVolume, player};
    if (!take(source, "\" to set sound volume to ")) return std::nullopt;
    const auto volume = parseVolume(source);
    if (!volume) return std::nullopt;
    return ScriptCommand{Verb::setVolume, player, *volume};
}

std::string_view nameOf(PlayerKind player)
{
    return player == PlayerKind::music ? "Music" : "Spotify";
}

ScriptResult pollAnswer(PlayerKind player, const Picture& picture)
{
    if (!picture.hasTrack()) return pollFailure();
    std::string text;
    text.append(picture.title).append("||").append(picture.artist).append("||").append(picture.album);
    text.append("||").append(truthValue(picture.status == PlaybackStatus::playing));
    if (player == PlayerKind::music) text.append("||").append(truthValue(picture.loved));
    return textAnswer(std::move(text));
}

ScriptResult notRunningAnswer()
{
    return textAnswer("notrunning");
}

ScriptResult pollFailure()
{
    return textAnswer("error");
}

ScriptResult volumeAnswer(int volume)
{
    auto result = textAnswer(std::to_string(volume));
    result.integer = volume;
    return result;
}

ScriptResult errorAnswer(std::string description)
{
    ScriptResult result;
    result.error = std::move(description);
    return result;
}

}  // namespace sonvara::players
