#include "volume/LoweredPlayers.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace sonvara {
namespace {

constexpr std::size_t mostAway = 50;

}  // namespace

int LoweredPlayers::Reading::percent() const
{
    return static_cast<int>(std::lround(std::clamp(volume, 0.0, 1.0) * 100));
}

void LoweredPlayers::begin()
{
    if (!std::exchange(hasBegun_, true)) surroundings_.recall();
}

void LoweredPlayers::remember(const LoweredNotes& notes)
{
    hasNotes_ = true;
    away_ = kept_ = notes;
    owesAnything_ = !notes.empty();
    keepNotes();
    for (auto& [run, known] : known_) takeNote(run, known);  // none is lowered yet, as none could be read
    for (const auto& read : std::exchange(untilNotes_, {})) read();
}

void LoweredPlayers::appeared(PlayerRun run, const std::string& name)
{
    const auto [known, isNew] = known_.try_emplace(run);
    if (!isNew) return;
    known->second.name = name;
    takeNote(run, known->second);
}

void LoweredPlayers::takeNote(PlayerRun run, Known& known)
{
    const auto note = std::ranges::find(away_, known.name, &LoweredNote::player);
    if (note == away_.end()) return;
    known.player.owe(note->levels);
    away_.erase(note);
    heard(run);
}

void LoweredPlayers::gone(PlayerRun run)
{
    const auto known = known_.extract(run);
    if (!known) return;
    if (const auto levels = known.mapped().player.levels()) {
        if (away_.size() == mostAway) away_.erase(away_.begin());
        away_.push_back({known.mapped().name, *levels, surroundings_.today()});
    }
    apply();
}

void LoweredPlayers::heard(PlayerRun run, std::optional<bool> isPlaying,
                           const std::optional<std::string>& track)
{
    const auto known = known_.find(run);
    if (known == known_.end()) return;
    known->second.player.hear(isPlaying, track, surroundings_.now());
    considerDuck(run, known->second);
    act();
}

void LoweredPlayers::polled()
{
    begin();
    for (auto& [run, known] : known_) known.player.hear({}, {}, surroundings_.now());
    act();
}

bool LoweredPlayers::mayMislead(PlayerRun run, const VolumeLook& look) const
{
    const auto known = known_.find(run);
    return known != known_.end() && known->second.player.mayMislead(look, surroundings_.now());
}

void LoweredPlayers::wake()
{
    act();
}

void LoweredPlayers::read(const std::string& player, const ReadAnswer& answer)
{
    begin();
    if (!hasNotes_) {
        untilNotes_.emplace_back([this, player, answer] { read(player, answer); });
        return;
    }
    const auto run = isEnding_ ? 0 : players_.meant(player);
    const auto known = known_.find(run);
    if (known == known_.end()) {
        answer(std::nullopt);
        return;
    }
    const auto commands = known->second.commands;
    players_.read(run, [this, player, answer, run, commands](const std::optional<VolumeLook>& look) {
        const auto asked = known_.find(run);
        if (asked == known_.end() || !look) {
            answer(std::nullopt);
            return;
        }
        auto& lowered = asked->second.player;
        if (asked->second.commands == commands) {
            see(run, asked->second, *look);
        } else if (lowered.isFree()) {
            read(player, answer);  // it has been put back meanwhile, and this may be from before
            return;
        }
        const auto levels = lowered.levels();
        if (lowered.isReadable(*look, surroundings_.now()))
            answer(Reading{run, levels ? levels->home : look->volume, look->isPlaying});
        else
            answer(std::nullopt);
    });
}

void LoweredPlayers::duck(const std::string& player, const Reading& reading, int percent)
{
    const auto known = known_.find(reading.run);
    if (isEnding_ || known == known_.end()) return;
    auto& lowered = known->second.player;
    const VolumeLevels levels = lowered.levels().value_or(VolumeLevels{reading.volume, percent / 100.0});
    ducked_ = {player, reading.run, levels};
    if (lines_ > 0 && reading.wasPlaying) lowered.lower(levels, surroundings_.now());
    apply();
}

void LoweredPlayers::restore(const std::string& player)
{
    if (ducked_.player == player) ducked_ = {};
    apply();
}

void LoweredPlayers::lineBegan()
{
    ++lines_;
    for (auto& [run, known] : known_) considerDuck(run, known);
    apply();
}

/// A duck that came when its line was over, or was read on a player that did not play, has lowered nothing.
/// The core believes that it has, so the player is lowered as soon as it can be; unless it has been moved
/// since it was read.
void LoweredPlayers::considerDuck(PlayerRun run, Known& known)
{
    if (isDucked(run) && lines_ > 0 && known.player.isFree() && !known.isLooking) look(run, known);
}

void LoweredPlayers::lineEnded()
{
    lines_ = std::max(lines_ - 1, 0);
    apply();
}

void LoweredPlayers::end()
{
    isEnding_ = true;
    ducked_ = {};
    apply();
}

bool LoweredPlayers::isSettled() const
{
    return std::ranges::none_of(
        known_, [](const auto& each) { return !each.second.player.isFree() && each.second.isLooking; });
}

void LoweredPlayers::look(PlayerRun run, Known& known)
{
    known.isLooking = true;
    known.commandsAtLook = known.commands;
    known.player.looksNow();
    players_.look(run, [this, run](const std::optional<VolumeLook>& look) { take(run, look); });
}

void LoweredPlayers::take(PlayerRun run, const std::optional<VolumeLook>& answer)
{
    const auto found = known_.find(run);
    if (found == known_.end()) return;
    auto& known = found->second;
    known.isLooking = false;
    if (known.commands != known.commandsAtLook)
        look(run, known);  // what was told meanwhile may not show in it
    else if (answer)
        see(run, known, *answer);
    act();
}

void LoweredPlayers::see(PlayerRun run, Known& known, const VolumeLook& look)
{
    const bool wasLowered = known.player.isLowered();
    known.player.see(look, surroundings_.now());
    if (isDucked(run)) {
        if (wasLowered && !known.player.isLowered())
            ducked_ = {};  // the user's hand: the core's way back has nothing to undo
        else if (lines_ > 0 && known.player.isFree() && look.isPlaying)
            lowerIfUnmoved(known, look.volume);
    }
    act();
}

void LoweredPlayers::lowerIfUnmoved(Known& known, double volume)
{
    if (known.player.isOpening(volume, surroundings_.now())) return;
    if (std::abs(volume - ducked_.levels.home) < sameWithin)
        known.player.lower(ducked_.levels, surroundings_.now());
    else
        ducked_ = {};
}

/// The rule.
void LoweredPlayers::apply()
{
    const auto now = surroundings_.now();
    for (auto& [run, known] : known_) known.player.want(isDucked(run) && lines_ > 0, now);
    act();
}

void LoweredPlayers::act()
{
    keepNotes();
    const auto now = surroundings_.now();
    auto next = VolumeTime::max();
    for (auto& [run, known] : known_) {
        while (const auto volume = known.player.takeCommand()) {
            ++known.commands;
            players_.tell(run, *volume);
        }
        const auto due = known.player.nextLook();
        if (!due || known.isLooking) continue;
        if (*due <= now)
            look(run, known);
        else
            next = std::min(next, *due);
    }
    if (next != VolumeTime::max()) surroundings_.wakeAt(next);
}

void LoweredPlayers::keepNotes()
{
    const auto today = surroundings_.today();
    std::erase_if(away_, [today](const LoweredNote& note) { return today - note.day > daysOfNotes; });
    auto notes = away_;
    for (const auto& [run, known] : known_)
        if (const auto levels = known.player.levels()) notes.push_back({known.name, *levels, today});
    if (notes == kept_) return;
    owesAnything_ = !notes.empty();
    kept_ = std::move(notes);
    surroundings_.keep(kept_);
}

}  // namespace sonvara
