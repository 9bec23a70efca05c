// Random numbers.
#pragma once

#include <random>

namespace sonvara {

/// The system's random source, for the distributions of the standard library. Any thread; each has its own.
[[nodiscard]] std::random_device& randomSource();

}  // namespace sonvara
