// What of a line reaches the speech daemon, and how long it may take to speak. Pure functions.
#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace sonvara {

/// How long a line may take before it counts as ended although no end was reported. Generous: the
/// user may have chosen a slow voice, and one figure or symbol is often spoken as several words.
struct SpeakingTime {
    std::chrono::milliseconds base{5000};
    std::chrono::milliseconds perLetter{150};  ///< ASCII letters, blanks and punctuation
    std::chrono::milliseconds perOther{600};   ///< figures and everything outside ASCII
};

/// No line speaks longer than this many code points (some three minutes); the rest is cut.
inline constexpr std::size_t longestLine = 2000;

/// `line` as well-formed UTF-8 on one line: control characters, line ends and bytes that belong to no
/// character become blanks; at most `longestLine` code points are left. Empty if only blanks are.
[[nodiscard]] std::string spokenText(std::string_view line);

/// The time in which `text`, a result of `spokenText`, is surely spoken.
[[nodiscard]] std::chrono::milliseconds longestTime(std::string_view text, const SpeakingTime& time);

}  // namespace sonvara
