#include "platform/macos/players/ScriptVolumes.h"

#include "platform/macos/players/ScriptLanes.h"
#include "ports/Queues.h"
#include "support/PlayerScripts.h"
#include "volume/LoweredPlayers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <memory>
#include <optional>
#include <utility>

namespace sonvara {
namespace {

constexpr std::array names{musicSource, spotifySource};

std::string nameOf(PlayerRun run)
{
    return names.at(run - 1);
}

// A bare command would start an application that does not run, and wait two minutes for one that hangs.
std::string lookScript(const std::string& name)
{
    return "if application \"" + name + R"(" is running then
    with timeout of 2 seconds
        tell application ")" +
           name + R"("
            set trackName to ""
            try
                set trackName to name of current track
            end try
            return "" & sound volume & "||" & (player state is playing) & "||" & trackName
        end tell
    end timeout
end if)";
}

std::string takeField(std::string& text)
{
    constexpr std::string_view separator = "||";
    const auto end = std::min(text.find(separator), text.size());
    auto field = text.substr(0, end);
    text.erase(0, end + separator.size());
    return field;
}

std::optional<VolumeLook> parseLook(const ScriptResult& result)
{
    if (!result.created || result.error || !result.text) return std::nullopt;
    auto text = *result.text;
    const auto volume = takeField(text);
    int percent = 0;
    const auto parsed = std::from_chars(volume.data(), volume.data() + volume.size(), percent);
    if (parsed.ec != std::errc{} || parsed.ptr != volume.data() + volume.size()) return std::nullopt;
    const bool isPlaying = takeField(text) != "false";
    return VolumeLook{isPlaying, percent / 100.0, text};
}

/// What a read by the core's command and a look after it tell together.
std::optional<VolumeLook> joined(const ScriptResult& read, std::optional<VolumeLook> look)
{
    if (!read.created || read.error) return std::nullopt;
    if (!look) look = VolumeLook{true, 0, ""};
    look->volume = read.integer / 100.0;
    return look;
}

}  // namespace

void ScriptVolumes::reportTo(LoweredPlayers& loweredPlayers)
{
    loweredPlayers_ = &loweredPlayers;
    for (PlayerRun run = 1; run <= names.size(); ++run) loweredPlayers.appeared(run, nameOf(run));
}

PlayerRun ScriptVolumes::meant(const std::string& player)
{
    const auto found = std::ranges::find(names, player);
    return found == names.end() ? 0 : static_cast<PlayerRun>(found - names.begin()) + 1;
}

void ScriptVolumes::read(PlayerRun run, const Answer& answer)
{
    const auto name = nameOf(run);
    const auto read = std::make_shared<ScriptResult>();
    scripts_.command(name, volumeScript({name, std::nullopt}),
                     [read](const ScriptResult& result) { *read = result; });
    scripts_.command(name, lookScript(name), [this, read, answer](const ScriptResult& result) {
        mainQueue_.post([answer, told = joined(*read, parseLook(result))] { answer(told); });
    });
}

void ScriptVolumes::look(PlayerRun run, const Answer& answer)
{
    const auto name = nameOf(run);
    scripts_.command(name, lookScript(name), [this, run, answer](const ScriptResult& result) {
        mainQueue_.post([this, run, answer, told = parseLook(result)] { take(run, told, answer); });
    });
}

/// A player that has ended plays no more: what it tells when it is back is judged afresh.
void ScriptVolumes::take(PlayerRun run, const std::optional<VolumeLook>& look, const Answer& answer)
{
    const bool wasRunning = std::exchange(isRunning_[run], look.has_value());
    if (wasRunning && !look) loweredPlayers_->heard(run, false);
    answer(look);
}

void ScriptVolumes::tell(PlayerRun run, double volume)
{
    // Upwards: a little more than a hundredth is for a player that cuts off.
    const auto percent = static_cast<int>(std::ceil((volume * 100) - 0.01));
    const auto name = nameOf(run);
    scripts_.command(name, volumeScript({name, std::clamp(percent, 0, 100)}), [](const ScriptResult&) {});
}

}  // namespace sonvara
