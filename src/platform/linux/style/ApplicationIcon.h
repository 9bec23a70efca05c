// The application's icon as windows and icon files show it.
#pragma once

#include "platform/linux/style/StylePalette.h"
#include "ports/Image.h"

#include <QIcon>

namespace sonvara {

/// The colours of the icon's drawing, which stands on a dark ground of its own.
[[nodiscard]] RoleColors applicationIconColors();

/// `drawing` in these colours, sharp at every size. Main thread.
[[nodiscard]] QIcon applicationIcon(const Drawing& drawing);

}  // namespace sonvara
