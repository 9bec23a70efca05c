// What the tests of the macOS adapters look at beside that. Main thread.
#pragma once

#include "windows/Probe.h"

#include <string>

namespace sonvara::test::probe {

/// Makes the application object, as a program does at its start.
void startApplication();

/// Which of close, miniaturise and resize the window offers, in the style mask of the system.
[[nodiscard]] unsigned long styleMask(const std::string& title);

[[nodiscard]] std::string clipboard();
void setClipboard(const std::string& text);

}  // namespace sonvara::test::probe
