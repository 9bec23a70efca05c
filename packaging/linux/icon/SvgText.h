// The core's vector pictures in the format SVG.
#pragma once

#include "platform/linux/style/StylePalette.h"
#include "ports/Image.h"

#include <string>

namespace sonvara {

/// `drawing` as an SVG document that is shown with `side` by `side` pixels unless somebody asks for another
/// size. Every shape is a filled path: desktops give symbolic icons the colour of their surroundings by
/// replacing the fill, and would leave the colour of an outline as it is.
[[nodiscard]] std::string svgText(const Drawing& drawing, const RoleColors& colors, int side);

}  // namespace sonvara
