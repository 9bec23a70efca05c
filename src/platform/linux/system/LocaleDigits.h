// How the user's locale writes numbers.
#pragma once

#include <string>

namespace sonvara {

/// Any thread: the zero of the user's locale, as UTF-8. The other digits follow it in Unicode.
[[nodiscard]] std::string zeroDigit();

}  // namespace sonvara
