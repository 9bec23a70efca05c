// The application's icon, made from the status icon's own drawing.
#pragma once

#include "ports/Image.h"

namespace sonvara {

/// The playing record on a dark disc, in a square of `size` points.
[[nodiscard]] Drawing appIcon(double size);

}  // namespace sonvara
