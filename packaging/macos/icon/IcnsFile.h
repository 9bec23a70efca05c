// The file format of the icons of applications.
#pragma once

#include <string>
#include <vector>

namespace sonvara {

/// The sizes in pixels of which such a file holds a picture; some stand for two kinds of screens.
[[nodiscard]] const std::vector<unsigned>& icnsSizes();

/// The file's content from one PNG file's content for each of `icnsSizes()`, in their order.
[[nodiscard]] std::string icnsFile(const std::vector<std::string>& pictures);

}  // namespace sonvara
