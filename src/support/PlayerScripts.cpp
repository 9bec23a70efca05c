#include "support/PlayerScripts.h"

#include "support/Text.h"

namespace sonvara {
namespace {

constexpr std::string_view fieldSeparator = "||";
constexpr std::string_view tell = "tell application \"";
constexpr std::string_view readVolume = "\" to get sound volume";
constexpr std::string_view setVolume = "\" to set sound volume to ";

std::optional<int> parseVolume(std::string_view digits)
{
    if (digits.empty() || digits.size() > 3) return std::nullopt;
    if (digits.size() > 1 && digits.front() == '0') return std::nullopt;
    int value = 0;
    for (const char digit : digits) {
        if (digit < '0' || digit > '9') return std::nullopt;
        value = value * 10 + (digit - '0');
    }
    return value <= 100 ? std::optional(value) : std::nullopt;
}

}  // namespace

std::string musicPollScript()
{
    return R"(try
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
}

std::string spotifyPollScript()
{
    return R"(try
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
}

std::string poll::write(const Track& track)
{
    const auto truth = [](bool value) { return value ? "true" : "false"; };
    auto answer = track.title;
    for (const auto& field : {track.artist, track.album, std::string(truth(track.isPlaying))})
        answer.append(fieldSeparator).append(field);
    if (track.isLoved) answer.append(fieldSeparator).append(truth(*track.isLoved));
    return answer;
}

std::optional<poll::Track> poll::read(std::string_view answer, std::size_t fields)
{
    const auto parts = text::split(answer, fieldSeparator);
    if (parts.size() < fields) return std::nullopt;
    const auto field = [&parts](std::size_t i) { return std::string(text::trim(parts[i])); };
    Track track{field(0), field(1), field(2), field(3) == "true", std::nullopt};
    if (fields >= musicFields) track.isLoved = field(4) == "true";
    return track;
}

std::string volumeScript(const VolumeCommand& command)
{
    std::string script(tell);
    script.append(command.player);
    if (!command.volume) return script.append(readVolume);
    return script.append(setVolume).append(std::to_string(*command.volume));
}

std::optional<VolumeCommand> parseVolumeScript(std::string_view script)
{
    if (!script.starts_with(tell)) return std::nullopt;
    script.remove_prefix(tell.size());
    const auto name = script.substr(0, script.find('"'));
    script.remove_prefix(name.size());
    if (script == readVolume) return VolumeCommand{std::string(name), std::nullopt};
    if (!script.starts_with(setVolume)) return std::nullopt;
    const auto volume = parseVolume(script.substr(setVolume.size()));
    if (!volume) return std::nullopt;
    return VolumeCommand{std::string(name), volume};
}

}  // namespace sonvara
