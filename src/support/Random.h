// Random numbers and identifiers.
#pragma once

#include <random>
#include <string>

namespace sonvara {

/// The calling thread's own generator. Its seed comes from the system's random source, which takes up to
/// 20 microseconds for each number and so is asked once only. Not for secrets.
[[nodiscard]] std::mt19937_64& randomNumbers();

/// A fresh random UUID (version 4) in its usual text form.
[[nodiscard]] std::string makeUuid();

}  // namespace sonvara
