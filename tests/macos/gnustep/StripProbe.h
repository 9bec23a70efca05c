// What a user would see of the status item and its menu. Main thread.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace sonvara::test::probe {

struct ShownItem {
    std::string title;  ///< as it is shown; "-" for a separator
    bool isEnabled = false;
    bool isChecked = false;
    bool isStyled = false;  ///< has a font and a colour of its own
    bool operator==(const ShownItem&) const = default;
};

/// Whether there is a visible status item.
[[nodiscard]] bool hasStatusItem();
[[nodiscard]] std::vector<ShownItem> statusMenu();

struct StatusImage {
    std::string symbol;       ///< of a system symbol
    std::string description;  ///< for a screen reader
    double width = 0;
    double height = 0;
    bool isTemplate = false;
    bool operator==(const StatusImage&) const = default;
};
[[nodiscard]] std::optional<StatusImage> statusImage();
/// Whether the button shows a picture alone, in its proportions and no larger than it is, and is not greyed.
[[nodiscard]] bool showsThePictureAsItIs();

/// A spot on the screen, as the display counts: from the upper left corner downwards.
struct Spot {
    int x = 0;
    int y = 0;
};
[[nodiscard]] Spot statusItemSpot();
[[nodiscard]] bool isMenuOpen();
/// The title of the item under the mouse in the open menu; empty for none.
[[nodiscard]] std::string highlightedItem();
/// Where the item called `title` is in the open menu; nothing while the menu is closed.
[[nodiscard]] std::optional<Spot> openMenuSpot(const std::string& title);

}  // namespace sonvara::test::probe
