// A log message as the arguments of a literal format.
#pragma once

#include "ports/SystemLog.h"

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace sonvara {

/// Public and private texts by turns, a public one first and last, any of them possibly empty. There is one
/// format for each number of private arguments, so there is a limit to that: everything between the last
/// permitted one and the last private piece counts as private.
struct LogArguments {
    static constexpr std::size_t maxPrivate = 2;

    explicit LogArguments(const std::vector<LogPiece>& pieces);

    std::array<std::string, 2 * maxPrivate + 1> texts;
    std::size_t privateCount = 0;
};

}  // namespace sonvara
