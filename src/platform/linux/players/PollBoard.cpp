#include "platform/linux/players/PollBoard.h"

#include <utility>

namespace sonvara {

void PollBoard::put(PlayerKind kind, std::optional<Known> known)
{
    const std::lock_guard lock(mutex_);
    if (known)
        known_[kind] = *std::move(known);
    else
        known_.erase(kind);
}

std::optional<ScriptResult> PollBoard::read(PlayerKind kind, Time now) const
{
    const std::lock_guard lock(mutex_);
    const auto known = known_.find(kind);
    if (known == known_.end() || now >= known->second.until) return std::nullopt;
    const auto& picture = known->second.picture;
    return picture ? pollAnswer(kind, *picture) : notRunningAnswer();
}

}  // namespace sonvara
