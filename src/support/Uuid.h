// Random identifiers.
#pragma once

#include <string>

namespace sonvara {

/// A fresh random UUID (version 4) in its usual text form, from the system's random source.
[[nodiscard]] std::string makeUuid();

}  // namespace sonvara
