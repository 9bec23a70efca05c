#include "platform/linux/players/VolumeHold.h"

#include "volume/VolumePrograms.h"

namespace sonvara::players {

void VolumeHold::learn(const std::string& owner, int volume)
{
    if (owner == owner_ && volume == volume_) return;  // it has done as it was told
    owner_ = owner;
    volume_ = volume;
    before_.reset();
}

void VolumeHold::set(const std::string& owner, int volume, Time now)
{
    before_ = owner == owner_ ? std::optional(volume_) : std::nullopt;
    owner_ = owner;
    volume_ = volume;
    until_ = now + limit;
    repeats_ = 0;
}

bool VolumeHold::isOpen(const std::string& owner, Time now) const
{
    return owner == owner_ && before_ && now < until_ && repeats_ < patience;
}

std::optional<int> VolumeHold::hear(const std::string& owner, int volume, Time now)
{
    if (!isOpen(owner, now) || isAbout(volume, volume_) || !isAbout(volume, *before_)) return std::nullopt;
    ++repeats_;
    return volume_;
}

}  // namespace sonvara::players
