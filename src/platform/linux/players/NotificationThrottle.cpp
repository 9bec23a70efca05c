#include "platform/linux/players/NotificationThrottle.h"

#include <algorithm>

namespace sonvara {

bool NotificationThrottle::admits(const PlayerSnapshot& snapshot, Time now)
{
    deadline_.reset();
    if (snapshot == told_) return false;
    const auto turn = used_ - (burst - 1) * interval;
    if (now < turn) {
        deadline_ = turn;
        return false;
    }
    told_ = snapshot;
    used_ = std::max(used_, now) + interval;
    return true;
}

}  // namespace sonvara
