// The application's own icon.
#pragma once

#include "platform/linux/style/StylePalette.h"
#include "ports/Image.h"

#include <QIcon>

namespace sonvara {

/// The colours of the application's own icon, whose drawing stands on a dark ground of its own.
[[nodiscard]] RoleColors applicationIconColors();

/// The application's own icon, which is drawn anew at every size and scale. Main thread.
[[nodiscard]] QIcon applicationIcon(const Drawing& drawing);

}  // namespace sonvara
