// What of a line reaches the speech daemon. Pure.
#pragma once

#include <string>
#include <string_view>

namespace sonvara {

/// No line speaks longer than this many code points (some three minutes); the rest is cut.
inline constexpr std::size_t longestLine = 2000;

/// `line` as well-formed UTF-8 on one line: control characters, line ends and bytes that belong to no
/// character become blanks; at most `longestLine` code points are left. Empty if only blanks are.
[[nodiscard]] std::string spokenText(std::string_view line);

}  // namespace sonvara
