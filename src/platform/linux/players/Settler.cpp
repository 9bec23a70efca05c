#include "platform/linux/players/Settler.h"

#include <algorithm>
#include <utility>

namespace sonvara {

void Settler::observe(const PlayerState& said, Time now)
{
    expire(now);
    auto picture = pictureOf(said);
    if (picture == picture_ || isCertain(said))
        settle(std::move(picture));
    else
        wait(said, now);
}

void Settler::expire(Time now)
{
    if (waiting_ && now >= waiting_->due) settle(pictureOf(waiting_->said));
}

std::optional<Time> Settler::deadline() const
{
    if (!waiting_) return std::nullopt;
    return waiting_->due;
}

// A pause while music plays may be the first half of a track change, too.
bool Settler::isCertain(const PlayerState& said) const
{
    if (said.status == PlaybackStatus::stopped || isAdvertisement(said.track) || !isComplete(said.track))
        return false;
    return said.status == PlaybackStatus::playing || picture_.status != PlaybackStatus::playing;
}

void Settler::settle(Picture picture)
{
    picture_ = std::move(picture);
    hasSettled_ = true;
    waiting_.reset();
}

void Settler::wait(const PlayerState& said, Time now)
{
    if (!waiting_) {
        waiting_ = {said, now + patience, now + greatestPatience};
        return;
    }
    // Another track has the full time for its own words, but a title that scrolls must come to an end.
    if (!sameSubject(waiting_->said, said)) waiting_->due = std::min(now + patience, waiting_->latest);
    waiting_->said = said;
}

}  // namespace sonvara
