// A mixture of habits by chance, and in words.
#pragma once

#include "Dice.h"
#include "ModelPlayer.h"

#include <array>
#include <cstddef>
#include <string>

namespace sonvara::test {

inline Quirks chooseQuirks(Dice& dice)
{
    Quirks quirks;
    quirks.truncates = dice.chance();
    quirks.closesStream = dice.chance();
    quirks.opensAtMemory = dice.chance();
    quirks.opensAtCube = quirks.opensAtMemory && !quirks.closesStream && dice.chance();
    if (quirks.opensAtMemory && dice.chance()) {
        quirks.tellsFirst = std::array{0.0, 0.01, 1.0}.at(static_cast<std::size_t>(dice.number(0, 2)));
        quirks.tellsFirstFor = Milliseconds(dice.number(10, quirks.tellsFirst == 1.0 ? 250 : 2000));
        // One that stands at the cube and far in its track is where its user may have put it.
        if (quirks.tellsFirst == 1.0 && !quirks.opensAtCube && dice.chance())
            quirks.resumesAt = Milliseconds(dice.number(3000, 9000));
    }
    quirks.believesItself = quirks.closesStream && quirks.opensAtMemory && !quirks.truncates &&
                            !quirks.tellsFirst && dice.chance();
    if (!quirks.believesItself && dice.chance()) quirks.swallows = Milliseconds(30);
    if (dice.chance()) quirks.lag = Milliseconds(dice.number(0, 60));
    // Whatever else, no player has been seen with this and the one or the other.
    if (!quirks.truncates && !quirks.opensAtCube && !quirks.believesItself && dice.chance())
        quirks.takesBack = Milliseconds(dice.number(5, 150));
    // Strawberry does the one or the other with a track, never both.
    if (quirks.takesBack && dice.chance()) {
        quirks.takesBack.reset();
        quirks.fallsSilent = Milliseconds(dice.number(5, 70));
    }
    return quirks;
}

inline std::string describe(const Quirks& quirks)
{
    return std::string("quirks:") + (quirks.truncates ? " truncates" : "") +
           (quirks.closesStream ? " closes" : "") + (quirks.opensAtMemory ? " remembers" : "") +
           (quirks.opensAtCube ? " cube" : "") + (quirks.believesItself ? " believes itself" : "") +
           " swallows " + std::to_string(quirks.swallows.count()) + " lag " +
           std::to_string(quirks.lag.count()) + " first " + std::to_string(quirks.tellsFirst.value_or(-1)) +
           " for " + std::to_string(quirks.tellsFirstFor.count()) + " resumes at " +
           std::to_string(quirks.resumesAt.count()) + " falls silent " +
           std::to_string(quirks.fallsSilent.value_or(Milliseconds(-1)).count());
}

}  // namespace sonvara::test
