#include "volume/LoweredPlayer.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace sonvara {
namespace {

using namespace std::chrono_literals;

constexpr double silence = 0.01;
// What is cut off or rounded to a hundredth. Further up it is the user's next step.
constexpr double cutOff = 0.0105;
constexpr double roundedUp = 0.0055;
// Above a volume that would be cut off, and below the next hundredth.
constexpr double little = 0.004;
constexpr int mostRepeats = 3;
// After so many repeats it is only told again when it is looked at anyway.
constexpr auto patience = 2500ms;

bool isSame(double volume, double other)
{
    return std::abs(volume - other) < sameWithin;
}

bool isAbout(double volume, double told)
{
    return volume > told - cutOff && volume < told + roundedUp;
}

}  // namespace

std::optional<VolumeLevels> LoweredPlayer::levels() const
{
    return isFree() ? std::nullopt : std::optional(levels_);
}

bool LoweredPlayer::isSilence(double volume, VolumeTime now) const
{
    return volume <= silence && !isReady(now);
}

bool LoweredPlayer::isOpening(double volume, VolumeTime now) const
{
    return isSilence(volume, now) || (isSame(volume, 1) && mayBeNew(now));
}

bool LoweredPlayer::isDoubtful(const VolumeLook& look, VolumeTime now) const
{
    return state_ == State::owed && isSame(look.volume, 1) && hasComeFar(look) && !goesOn_ && !isReady(now);
}

bool LoweredPlayer::isReadable(const VolumeLook& look, VolumeTime now) const
{
    if (isFree()) return !isSilence(look.volume, now);
    const bool isSilenced =
        state_ == State::owed && isReady(now) && look.volume <= silence && !isAtHome(look.volume);
    return !isSilenced && !isDoubtful(look, now);
}

bool LoweredPlayer::mayMislead(const VolumeLook& look, VolumeTime now) const
{
    if (!isFree()) return isDoubtful(look, now);
    return isSame(look.volume, 1) && !hasOpened_ && look.position < opening &&
           (!isPlaying_ || now < playsSince_ + connecting);
}

bool LoweredPlayer::hasFallenSilent(VolumeTime now) const
{
    const bool wasTold = !isFree() && told_ != VolumeTime{};
    return wasTold && isPlaying_ && isSilent_ && !beganSilent_ && now < trackSince_ + connecting;
}

bool LoweredPlayer::isAtHome(double volume) const
{
    return isAbout(volume, levels_.home);
}

bool LoweredPlayer::isAboutLow(double volume) const
{
    return isAbout(volume, levels_.low);
}

bool LoweredPlayer::isCube(double volume, VolumeTime now) const
{
    const auto root = std::cbrt(volume);
    return mayBeNew(now) && (isAbout(root, levels_.low) || isAbout(root, levels_.home));
}

void LoweredPlayer::lower(const VolumeLevels& levels, VolumeTime now)
{
    if (isFree()) {
        levels_ = levels;
        state_ = State::owed;
    }
    want(true, now);
}

void LoweredPlayer::want(bool low, VolumeTime now)
{
    const auto wanted = low ? State::lowered : State::owed;
    if (isFree() || state_ == wanted) return;
    state_ = wanted;
    repeats_ = 0;
    hasObeyed_ = false;
    tell(low ? levels_.low : levels_.home, now);
}

void LoweredPlayer::beginTrack(VolumeTime now)
{
    trackSince_ = now;
    beganSilent_ = isSilent_;
}

void LoweredPlayer::hear(std::optional<bool> isPlaying, const std::optional<std::string>& track,
                         VolumeTime now)
{
    hasOpened_ = hasOpened_ || isReady(now);
    if (track && *track != track_) {
        track_ = *track;
        beginTrack(now);
        hasHeldTrack_ = false;
    }
    if (isPlaying == true && !isPlaying_) {
        playsSince_ = now;
        beginTrack(now);
        toldWhilePlaying_ = false;
        repeats_ = 0;
    }
    isPlaying_ = isPlaying.value_or(isPlaying_);
    sawItBegin_ = sawItBegin_ || isPlaying == false;
    if (!isFree()) nextLook_ = now;
}

void LoweredPlayer::see(const VolumeLook& look, VolumeTime now)
{
    hear(look.isPlaying, look.track, now);
    sawItBegin_ = sawItBegin_ || (wasDoubtful_ && !isSame(look.volume, 1));  // it was not its user's
    hasComeFar_ = hasComeFar(look);
    if (!firstPosition_) firstPosition_ = look.position;
    goesOn_ = goesOn_ || look.position > *firstPosition_;
    wasDoubtful_ = isDoubtful(look, now);
    isSilent_ = look.volume <= silence;
    nextLook_.reset();
    if (hasFallenSilent(now)) {
        if (hasSettled(now)) tell(state_ == State::lowered ? levels_.low : levels_.home, now);
    } else {
        if (state_ == State::lowered && isPlaying_) judgeLowered(look.volume, now);
        if (state_ == State::owed) judgeOwed(look.volume, now);
    }
    if (!command_) planLook(now);
}

void LoweredPlayer::judgeLowered(double volume, VolumeTime now)
{
    if (isAboutLow(volume)) {
        hasObeyed_ = true;
        return;
    }
    if (!hasObeyed_ && (isAtHome(volume) || isCube(volume, now))) {
        if (repeats_ < mostRepeats) repeat(levels_.low, now);
        return;
    }
    if (isSame(volume, levels_.home) && !hasHeldTrack_ && now < trackSince_ + beginning) {
        hasHeldTrack_ = true;
        hasObeyed_ = false;
        repeats_ = mostRepeats;  // if it does so again, it has its way
        tell(levels_.low, now);
    } else if (!isOpening(volume, now) && hasSettled(now)) {
        // One that went home by itself may go low by itself, too, where its tracks change quickly; and one that is
        // silenced while it is low comes back low.
        state_ = isAtHome(volume) || volume <= silence ? State::owed : State::free;
        repeats_ = 0;
    }
}

void LoweredPlayer::judgeOwed(double volume, VolumeTime now)
{
    if (wasDoubtful_) return;
    if (isAtHome(volume)) {
        judgeHome(volume, now);
    } else if (isAboutLow(volume) || isCube(volume, now)) {
        repeat(levels_.home, now);
    } else if (isPlaying_ && volume > silence && !isOpening(volume, now) && hasSettled(now)) {
        state_ = State::free;
    }
}

void LoweredPlayer::judgeHome(double volume, VolumeTime now)
{
    const bool isExact = volume > levels_.home - sameWithin;
    if (!isExact && repeats_ < mostRepeats) {
        repeat(std::min(levels_.home + little, 1.0), now);
    } else if (isPlaying_ && (!toldWhilePlaying_ || (isCertain(now) && !toldWhileReady_))) {
        tell(levels_.home, now);
        repeats_ = 0;
        toldElsewhere_ = now;
        detour_ = levels_.home < 1 ? levels_.home + little : levels_.home - little;
    } else if (isCertain(now) && now >= toldElsewhere_ + settling && (isExact || hasSettled(now))) {
        state_ = State::free;
    }
}

void LoweredPlayer::planLook(VolumeTime now)
{
    if (isFree()) return;
    if (wasDoubtful_)
        nextLook_ = now + settling;
    else if (!hasSettled(now))
        nextLook_ = told_ + settling;
    else if (state_ == State::owed && isPlaying_ && !isCertain(now))
        nextLook_ = std::max(playsSince_ + opening, trackSince_ + beginning);
}

void LoweredPlayer::tell(double volume, VolumeTime now)
{
    command_ = volume;
    told_ = now;
    if (state_ == State::lowered) toldElsewhere_ = now;
    detour_.reset();
    toldWhilePlaying_ = isPlaying_;
    toldWhileReady_ = isReady(now);
    nextLook_ = now;
}

void LoweredPlayer::repeat(double volume, VolumeTime now)
{
    if (!hasSettled(now) || (repeats_ >= mostRepeats && now < told_ + patience)) return;
    ++repeats_;
    tell(volume, now);
}

std::optional<double> LoweredPlayer::takeCommand()
{
    return std::exchange(detour_ ? detour_ : command_, std::nullopt);
}

}  // namespace sonvara
