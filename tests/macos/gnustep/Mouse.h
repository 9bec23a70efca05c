// The mouse of the display, moved from outside of the program as by a hand. Any thread but the main one.
#pragma once

#include <string>

namespace sonvara::test::probe {

/// Presses the status item and waits until its menu is open.
[[nodiscard]] bool pressStatusItem();

/// Moves on to an item of the open menu, lets go there, and waits until the menu has closed.
[[nodiscard]] bool releaseOnItem(const std::string& title);

/// Both: chooses an item of the status menu.
[[nodiscard]] bool chooseFromStatusMenu(const std::string& title);

}  // namespace sonvara::test::probe
