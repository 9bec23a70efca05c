// The status icon: a record with a tone arm, drawn from vector shapes.
#pragma once

#include "ports/Image.h"

namespace sonvara {

/// The icon for either playing state: 18 x 18 points. The one for a silent player takes the colour of
/// its surroundings; the one for a playing player has colours of its own and a stylus dot.
[[nodiscard]] Drawing statusIcon(bool isPlaying);

}  // namespace sonvara
