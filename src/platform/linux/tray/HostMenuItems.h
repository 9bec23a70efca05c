// The menu's items as a tray host is told of them.
#pragma once

#include "platform/linux/tray/DBusMenu.h"

namespace sonvara {

/// The label that makes a host show exactly `title`.
[[nodiscard]] QString dbusMenuLabel(const QString& title);

/// What a host is told of the items of `menu`, in their order. A line wider than a menu bears is cut in its
/// middle, and of very many lines the last ones are left out, for hosts let such an item push the choices off
/// the screen. Without `growsItems` each further line of a text is an item of its own. Main thread.
[[nodiscard]] DBusMenuPropertiesList hostItems(const QtStatusMenu& menu, bool growsItems);

/// The texts of `menu` that `hostItems` cuts, whole, one below the other; in lines as wide as the widest there unless the
/// host `wrapsToolTip` itself. Main thread.
[[nodiscard]] QString cutTexts(const QtStatusMenu& menu, bool wrapsToolTip);

}  // namespace sonvara
