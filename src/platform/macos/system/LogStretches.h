// A log message in the form that literal formats can take.
#pragma once

#include "ports/SystemLog.h"

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace sonvara {

/// Public and private stretches by turns, a public one first and last, any of them possibly empty.
/// There is one format for each number of private stretches, so there is a limit to that: everything
/// between the last permitted one and the last private piece counts as private.
struct LogStretches {
    static constexpr std::size_t maxPrivate = 2;

    explicit LogStretches(const std::vector<LogPiece>& pieces);

    std::array<std::string, 2 * maxPrivate + 1> texts;
    std::size_t privateCount = 0;
};

}  // namespace sonvara
