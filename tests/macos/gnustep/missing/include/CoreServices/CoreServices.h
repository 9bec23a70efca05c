// Stand-in: the user's consent to Apple events.
#pragma once

#include <cstdint>

using Boolean = unsigned char;
using OSStatus = std::int32_t;

/// Known to the stand-ins as the identifier of a bundle only.
struct AEDesc {
    const char* bundle;
};

constexpr std::uint32_t typeWildCard = 0x2A2A2A2A;

/// Blocks while the user is being asked.
OSStatus AEDeterminePermissionToAutomateTarget(const AEDesc* target, std::uint32_t eventClass,
                                               std::uint32_t event, Boolean asks);
