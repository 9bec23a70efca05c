// The language in which the user runs the session, from the locale's variables.
#pragma once

#include "ports/System.h"

#include <string>
#include <string_view>

namespace sonvara {

/// The language tag of the locale for messages: "de-DE" for "de_DE.UTF-8@euro". "en-US" for the
/// locales "C" and "POSIX", for none, and for one that names no language.
[[nodiscard]] std::string languageTag(const Variables& variables);

/// Whether `tag` consists of letters and figures in groups joined by hyphens.
[[nodiscard]] bool isLanguageTag(std::string_view tag);

}  // namespace sonvara
