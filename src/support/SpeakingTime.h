// How long a line may take to be spoken. Pure.
#pragma once

#include <chrono>
#include <string_view>

namespace sonvara {

/// How long a line may take before it counts as ended although no end was reported. Generous: the
/// user may have chosen a slow voice, and one figure or symbol is often spoken as several words.
struct SpeakingTime {
    std::chrono::milliseconds base{5000};
    std::chrono::milliseconds perLetter{150};  ///< ASCII letters, blanks and punctuation
    std::chrono::milliseconds perOther{600};   ///< figures and everything outside ASCII
};

/// The time in which `text` is surely spoken.
[[nodiscard]] std::chrono::milliseconds longestTime(std::string_view text, const SpeakingTime& time);

}  // namespace sonvara
