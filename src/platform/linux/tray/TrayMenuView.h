// The tray menu drawn by ourselves, for a tray that does not draw menus.
#pragma once

#include "platform/linux/tray/QtStatusMenu.h"

#include <QMenu>
#include <QPoint>

namespace sonvara {

/// Keeps a native menu equal to `menu`, which must outlive it. Main thread.
class TrayMenuView final : public QObject {
    Q_OBJECT

public:
    explicit TrayMenuView(QtStatusMenu& menu);

    [[nodiscard]] QMenu& widget() { return widget_; }
    /// Opens the menu with its corner at `place` on the screen.
    void popUp(QPoint place);

private:
    void rebuild();
    [[nodiscard]] QAction* makeAction(const QtStatusMenu::Entry& entry);

    QtStatusMenu& menu_;
    QMenu widget_;
};

}  // namespace sonvara
