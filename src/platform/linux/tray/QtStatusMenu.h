// The menu's items, and who is told of them; drawn by the tray host or by a menu of ours.
#pragma once

#include "ports/StatusBar.h"
#include "support/Callbacks.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <vector>

namespace sonvara {

/// Holds the items for any number of views, their texts cut to what a screen can show. Main thread only.
class QtStatusMenu final : public QObject, public StatusMenu {
    Q_OBJECT

public:
    /// `id` is positive. An item keeps it over `setItems` as long as choosing it means the same, so
    /// that a click that arrives late can never run another item's action.
    struct Entry {
        int id = 0;
        MenuItem item;
    };

    /// `gathering` is for how long after a change more may come before the views hear of all. A new track
    /// changes the items in several steps; each that is told makes the tray host work, just while the line is
    /// on its way.
    explicit QtStatusMenu(std::chrono::milliseconds gathering = std::chrono::milliseconds(50));

    /// The views hear of it after `gathering` at the latest, once for several changes, unless all looks as
    /// before.
    void setItems(std::vector<MenuItem> items) override;
    [[nodiscard]] Subscription onWillOpen(std::function<void()> handler) override;

    [[nodiscard]] const std::vector<Entry>& entries() const { return entries_; }

    /// For the views: tells them of a change that they have not heard of yet. To be called before somebody is
    /// shown what they have taken over.
    void publish();
    /// For the views: the menu begins to open; the items and the views are up to date when this returns.
    void willOpen();
    /// For the views: the user chose an item. Does nothing for an id that is gone or an item that is off.
    void choose(int id);

Q_SIGNALS:
    void itemsChanged();

private:
    [[nodiscard]] int idFor(std::size_t position, const MenuItem& item);

    std::vector<Entry> entries_;
    int lastId_ = 0;
    Callbacks<> willOpen_;
    QTimer publishing_;
};

}  // namespace sonvara
