// What a user would see of a renderer's windows, and do with them: each platform implements it. Main thread.
//
// A place is the title of a visible window, or that title and "/sheet" for the sheet over it.
#pragma once

#include "ports/Windows.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace sonvara::test::probe {

/// The windows of this platform.
[[nodiscard]] std::unique_ptr<Windows> makeWindows();

/// Handles events until `condition` holds. Returns whether it did within 20 seconds.
[[nodiscard]] bool runUntil(const std::function<bool()>& condition);

// --- Windows ---------------------------------------------------------------------------------------

[[nodiscard]] bool isShown(const std::string& place);
[[nodiscard]] int countWindows(const std::string& title);
/// Also one whose window has gone.
[[nodiscard]] bool isAnySheetShown();
struct Size {
    double width = 0;
    double height = 0;
    bool operator==(const Size&) const = default;
};
[[nodiscard]] Size contentSize(const std::string& place);
void pressCloseButton(const std::string& title);
void miniaturize(const std::string& title);
void pressEscape(const std::string& place);

// --- Controls --------------------------------------------------------------------------------------

/// All visible texts that are no control's title, in the order of the views.
[[nodiscard]] std::vector<std::string> texts(const std::string& place);
[[nodiscard]] bool hasText(const std::string& place, const std::string& text);
/// Whether a text has room for all its lines where it stands.
[[nodiscard]] bool isWhole(const std::string& place, const std::string& text);
/// How far below the upper edge of the scrolling view around it a text begins, in points.
[[nodiscard]] double placeInSight(const std::string& place, const std::string& text);
[[nodiscard]] bool isSelectable(const std::string& place, const std::string& text);

struct ButtonState {
    bool isEnabled = false;
    bool isOn = false;
    bool operator==(const ButtonState&) const = default;
};
/// A push button or a switch; nothing when there is none of that title.
[[nodiscard]] std::optional<ButtonState> button(const std::string& place, const std::string& title);
void press(const std::string& place, const std::string& title);

struct PopUpState {
    std::vector<std::string> options;
    int selected = -1;
    bool isEnabled = false;
};
[[nodiscard]] PopUpState popUp(const std::string& place);
void choose(const std::string& place, int option);

/// Scrolls the first scrolling view to its end.
void scrollToEnd(const std::string& place);

}  // namespace sonvara::test::probe
