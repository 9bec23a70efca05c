// Port: the item in the system's status bar, and its menu.
#pragma once

#include "ports/Image.h"
#include "ports/Style.h"
#include "support/Subscription.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace sonvara {

/// One item of a menu. Titles are shown as they are: no character in them has a meaning.
struct MenuItem {
    bool isSeparator = false;
    std::string title;
    std::optional<StyledText> attributedTitle;  ///< shown in place of `title`
    bool isEnabled = false;
    std::optional<bool> isChecked;  ///< absent for an item that is no switch
    std::function<void()> action;   ///< run on the main thread when the user chooses the item
};

/// A menu. Main thread only.
class StatusMenu {
public:
    virtual ~StatusMenu() = default;

    /// Replaces all items; allowed while the menu is open and from an item's action.
    virtual void setItems(std::vector<MenuItem> items) = 0;

    /// Calls `handler` each time the menu begins to open, before its items are shown.
    [[nodiscard]] virtual Subscription onWillOpen(std::function<void()> handler) = 0;
};

/// The visible part of a status item: shows its image alone, scaled down to fit, never greyed out.
/// Main thread only.
class StatusButton {
public:
    virtual ~StatusButton() = default;
    /// `image` comes from the platform's own renderer and is not null.
    virtual void setImage(std::shared_ptr<const Image> image) = 0;
    virtual void setSymbol(const Symbol& symbol) = 0;
};

/// A square item in the status bar. Main thread only.
class StatusItem {
public:
    virtual ~StatusItem() = default;

    /// The item's button, which lives as long as the item; null when the system gives none.
    [[nodiscard]] virtual StatusButton* button() = 0;
    virtual void setVisible(bool visible) = 0;
    /// Attaches the menu that the item opens; it must outlive the item.
    virtual void setMenu(StatusMenu& menu) = 0;
};

/// Makes status items. Main thread only.
class StatusBar {
public:
    virtual ~StatusBar() = default;
    [[nodiscard]] virtual std::unique_ptr<StatusItem> makeSquareItem() = 0;
    [[nodiscard]] virtual std::unique_ptr<StatusMenu> makeMenu() = 0;
};

}  // namespace sonvara
