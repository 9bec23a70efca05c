// Identifiers that nobody else has.
#pragma once

#include <string>

namespace sonvara {

/// A fresh random UUID (version 4) in its usual text form. Any thread.
[[nodiscard]] std::string makeUuid();

}  // namespace sonvara
