// Where the program keeps files of its own.
#pragma once

#include <string>

namespace sonvara {

/// The path for a file called `name` in the user's folder for files that support this application, which
/// need not be there yet.
[[nodiscard]] std::string supportFile(const std::string& name);

}  // namespace sonvara
