#include "platform/linux/players/MprisVolume.h"

#include "platform/linux/players/MprisDecoder.h"
#include "platform/linux/players/PlayerReports.h"
#include "volume/LoweredNotes.h"
#include "volume/LoweredPlayers.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>

#include <algorithm>
#include <chrono>

namespace sonvara {
namespace {

// A new stream may have no volume for 0.3 seconds, as was seen on PipeWire, or not yet its own: it is read again for
// longer than that.
constexpr std::chrono::milliseconds pause{100};
constexpr int patience = 4;
constexpr double audible = 0.005;  // else it is 0 of 100: cmus tells a tiny number while it knows none

std::string keyOf(const Track& track)
{
    return track.id + '\n' + track.title + '\n' + track.url;
}

std::optional<VolumeLook> lookOf(const StateMessage& answer)
{
    const auto volume = decodeVolume(answer.properties.value(QStringLiteral("Volume")));
    if (!volume) return std::nullopt;
    const auto& [status, track] = answer.change;
    const std::chrono::microseconds position(
        answer.properties.value(QStringLiteral("Position")).toLongLong());
    return VolumeLook{status == PlaybackStatus::playing, *volume, keyOf(track.value_or(Track{})),
                      std::chrono::floor<std::chrono::milliseconds>(position)};
}

}  // namespace

MprisVolume::MprisVolume(MprisBus& bus, const PlayerDirectory& directory) : bus_(bus), directory_(directory)
{
    connect(&bus, &MprisBus::ownerChanged, this,
            [this](const std::string&, const std::string&, const std::string& now) { takeOwnerChange(now); });
    connect(&bus, &MprisBus::stateSignalled, this,
            [this](const std::string& owner, const std::optional<StateMessage>& changed) {
                if (changed)
                    takeState(owner, changed->change);
                else
                    takeState(owner, StateChange());
            });
    connect(
        &bus, &MprisBus::stateAnswered, this,
        [this](const std::string& owner, const StateMessage& answer) { takeState(owner, answer.change); });
}

PlayerRun MprisVolume::meant(const std::string& player)
{
    const auto kind = std::ranges::find(allPlayerKinds, player, nameOf);
    const auto* chosen = kind == allPlayerKinds.end() ? nullptr : directory_.chosen(*kind);
    return chosen == nullptr ? 0 : report(*chosen);
}

void MprisVolume::read(PlayerRun run, const Answer& answer)
{
    read(run, answer, patience);
}

void MprisVolume::read(PlayerRun run, const Answer& answer, int repeats)
{
    ask(run, [this, run, answer, repeats](const std::optional<VolumeLook>& look) {
        const bool isEarly = look && (look->volume < audible || (loweredPlayers_ != nullptr &&
                                                                 loweredPlayers_->mayMislead(run, *look)));
        if (isEarly && repeats > 0)
            QTimer::singleShot(pause, this, [this, run, answer, repeats] { read(run, answer, repeats - 1); });
        else
            answer(look);
    });
}

// Behind the line that a change of tracks brings, as the polls are.
void MprisVolume::look(PlayerRun run, const Answer& answer)
{
    looks_.emplace_back(run, answer);
    QCoreApplication::postEvent(this, new QEvent(QEvent::User), Qt::LowEventPriority);
}

void MprisVolume::customEvent(QEvent* /*event*/)
{
    for (const auto& [run, answer] : std::exchange(looks_, {})) ask(run, answer);
}

void MprisVolume::ask(PlayerRun run, const Answer& answer)
{
    const auto owner = owners_.find(run);
    if (owner == owners_.end())
        answer(std::nullopt);
    else
        bus_.askState(owner->second, [answer](const StateMessage& state) { answer(lookOf(state)); });
}

void MprisVolume::tell(PlayerRun run, double volume)
{
    bus_.setVolume(owners_[run], volume);
}

PlayerRun MprisVolume::report(const Player& player)
{
    if (loweredPlayers_ != nullptr && owners_.emplace(player.serial, player.owner).second)
        loweredPlayers_->appeared(player.serial, stableName(player.names.front()));
    return player.serial;
}

void MprisVolume::takeOwnerChange(const std::string& now)
{
    if (loweredPlayers_ == nullptr) return;
    std::vector<PlayerRun> lost;
    for (const auto& [run, owner] : owners_) {
        const auto* player = directory_.find(owner);
        if (player == nullptr || player->serial != run) lost.push_back(run);
    }
    for (const auto run : lost) {
        owners_.erase(run);
        loweredPlayers_->gone(run);
    }
    if (const auto* player = directory_.find(now)) report(*player);
}

void MprisVolume::takeState(const std::string& owner, const StateChange& state)
{
    const auto* player = directory_.find(owner);
    if (player == nullptr || loweredPlayers_ == nullptr) return;
    const auto run = report(*player);
    const auto isPlaying =
        state.status ? std::optional(*state.status == PlaybackStatus::playing) : std::nullopt;
    const auto track = state.track ? std::optional(keyOf(*state.track)) : std::nullopt;
    loweredPlayers_->heard(run, isPlaying, track);
}

}  // namespace sonvara
