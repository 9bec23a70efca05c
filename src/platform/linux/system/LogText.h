// How a log message reads.
#pragma once

#include "ports/SystemLog.h"

#include <string>
#include <string_view>

namespace sonvara {

/// `text` with every control character, line separator and direction mark replaced by an escape such
/// as "\n" or "\x1b", and what is not UTF-8 by replacement characters: what a track is called can
/// neither forge a line of a log nor command a terminal.
[[nodiscard]] std::string escapedForLog(std::string_view text);

/// The pieces of `message`, escaped, one after the other; private ones as "<private>" unless
/// `showsPrivate`.
[[nodiscard]] std::string logText(const LogMessage& message, bool showsPrivate);

}  // namespace sonvara
