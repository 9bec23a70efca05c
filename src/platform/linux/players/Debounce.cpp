#include "platform/linux/players/Debounce.h"

#include <algorithm>
#include <utility>

namespace sonvara {

void Debounce::observe(const PlayerState& said, Time now)
{
    expire(now);
    auto snapshot = snapshotOf(said);
    if (snapshot == snapshot_ || isCertain(said))
        accept(std::move(snapshot));
    else
        holdBack(said, now);
}

void Debounce::expire(Time now)
{
    if (heldBack_ && now >= heldBack_->due) accept(snapshotOf(heldBack_->said));
}

std::optional<Time> Debounce::deadline() const
{
    if (!heldBack_) return std::nullopt;
    return heldBack_->due;
}

// A pause while music plays may be the first half of a track change, too.
bool Debounce::isCertain(const PlayerState& said) const
{
    if (said.status == PlaybackStatus::stopped || isAdvertisement(said.track) || !isComplete(said.track))
        return false;
    return said.status == PlaybackStatus::playing || snapshot_.status != PlaybackStatus::playing;
}

void Debounce::accept(PlayerSnapshot snapshot)
{
    snapshot_ = std::move(snapshot);
    heldBack_.reset();
}

std::chrono::milliseconds Debounce::delayOf(const PlayerState& said) const
{
    const bool isPause = said.status == PlaybackStatus::paused && snapshotOf(said).title == snapshot_.title;
    return isPause ? pauseDelay : delay;
}

void Debounce::holdBack(const PlayerState& said, Time now)
{
    if (!heldBack_) {
        heldBack_ = {said, now + delayOf(said), now + longestDelay};
        return;
    }
    // Another track gets the full time for its own words. A title that scrolls must come to an end.
    if (!isSameTrack(heldBack_->said, said))
        heldBack_->due = std::min(now + delayOf(said), heldBack_->latest);
    heldBack_->said = said;
}

}  // namespace sonvara
