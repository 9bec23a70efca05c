// What the tests of the macOS adapters look at beside that. Main thread.
#pragma once

#include "windows/Probe.h"

#include <string>

namespace sonvara::test::probe {

/// Makes the application object, as a program does at its start.
void startApplication();

/// Which of close, miniaturise and resize the window offers, in the style mask of the system.
[[nodiscard]] unsigned long styleMask(const std::string& title);
/// Presses a key together with the Command key, as the application gets it. The window of that title has the keyboard.
void pressCommand(const std::string& title, const std::string& key);
/// Puts the caret into a selectable text, as a click does.
void select(const std::string& place, const std::string& text);

[[nodiscard]] std::string clipboard();
void setClipboard(const std::string& text);

}  // namespace sonvara::test::probe
