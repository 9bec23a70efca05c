// Random identifiers.
#pragma once

#include <string>

namespace sonvara {

/// A fresh random UUID (version 4) in its usual text form.
[[nodiscard]] std::string makeUuid();

}  // namespace sonvara
