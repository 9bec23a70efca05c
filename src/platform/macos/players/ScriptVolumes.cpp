#include "platform/macos/players/ScriptVolumes.h"

#include "ports/Queues.h"
#include "support/PlayerScripts.h"
#include "volume/LoweredPlayers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <utility>

namespace sonvara {
namespace {

constexpr std::array names{musicSource, spotifySource};

std::string nameOf(PlayerRun run)
{
    return std::string(names.at(run - 1));
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

}  // namespace

void ScriptVolumes::reportTo(LoweredPlayers& keeper)
{
    keeper_ = &keeper;
    for (PlayerRun run = 1; run <= names.size(); ++run) keeper.appeared(run, nameOf(run));
}

PlayerRun ScriptVolumes::meant(const std::string& player)
{
    const auto found = std::ranges::find(names, player);
    return found == names.end() ? 0 : static_cast<PlayerRun>(found - names.begin()) + 1;
}

void ScriptVolumes::read(PlayerRun run, const Answer& answer)
{
    add([this, run, answer] {
        const auto result = scripts_.run(volumeScript({nameOf(run), std::nullopt}));
        auto told = parseLook(scripts_.run(lookScript(nameOf(run))));
        const bool isRead = result.created && !result.error;
        if (isRead && told) told->volume = result.integer / 100.0;
        if (isRead && !told) told = VolumeLook{true, result.integer / 100.0, ""};
        if (!isRead) told.reset();
        mainQueue_.post([answer, told] { answer(told); });
    });
}

void ScriptVolumes::look(PlayerRun run, const Answer& answer)
{
    add([this, run, answer] {
        const auto told = parseLook(scripts_.run(lookScript(nameOf(run))));
        mainQueue_.post([this, run, answer, told] { take(run, told, answer); });
    });
}

/// A player that has ended plays no more: what it tells when it is back is judged afresh.
void ScriptVolumes::take(PlayerRun run, const std::optional<VolumeLook>& look, const Answer& answer)
{
    const bool wasRunning = std::exchange(isRunning_[run], look.has_value());
    if (wasRunning && !look) keeper_->heard(run, false);
    answer(look);
}

void ScriptVolumes::tell(PlayerRun run, double volume)
{
    // Upwards: a little more than a hundredth is for a player that cuts off.
    const auto percent = static_cast<int>(std::ceil((volume * 100) - 0.01));
    const auto script = volumeScript({nameOf(run), std::clamp(percent, 0, 100)});
    add([this, script] { (void)scripts_.run(script); });
}

void ScriptVolumes::add(Job job)
{
    const std::lock_guard lock(mutex_);
    jobs_.push_back(std::move(job));
    if (std::exchange(isWorking_, true)) return;
    workers_.post(QualityOfService::userInitiated, [this] { work(); });
}

void ScriptVolumes::work()
{
    std::unique_lock lock(mutex_);
    while (!jobs_.empty()) {
        const auto job = std::move(jobs_.front());
        jobs_.pop_front();
        lock.unlock();
        job();
        lock.lock();
    }
    isWorking_ = false;
    changed_.notify_all();
}

bool ScriptVolumes::finish(std::chrono::milliseconds limit)
{
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, limit, [this] { return !isWorking_; });
}

}  // namespace sonvara
