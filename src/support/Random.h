// Random numbers.
#pragma once

#include <random>

namespace sonvara {

/// The calling thread's own generator. Its seed comes from the system's random source, which takes up to
/// 20 microseconds for each number and so is asked once only. Not for secrets.
[[nodiscard]] std::mt19937_64& randomNumbers();

}  // namespace sonvara
