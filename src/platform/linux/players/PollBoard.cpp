#include "platform/linux/players/PollBoard.h"

#include <cstddef>
#include <utility>

namespace sonvara::players {
namespace {

std::size_t placeOf(PlayerKind kind)
{
    return kind == PlayerKind::music ? 0 : 1;
}

}  // namespace

void PollBoard::put(PlayerKind kind, std::optional<Known> known)
{
    const std::lock_guard lock(mutex_);
    known_[placeOf(kind)] = std::move(known);
}

std::optional<ScriptResult> PollBoard::read(PlayerKind kind, Time now) const
{
    const std::lock_guard lock(mutex_);
    const auto& known = known_[placeOf(kind)];
    if (!known || now >= known->until) return std::nullopt;
    return known->picture ? pollAnswer(kind, *known->picture) : notRunningAnswer();
}

}  // namespace sonvara::players
