// The tray item as an X window inside the panel, for a tray of the older kind.
#pragma once

#include <QIcon>
#include <QSystemTrayIcon>

#include <memory>

namespace sonvara {

class QtStatusMenu;
class TrayMenuView;

/// To be made only while there is no StatusNotifier host: what Qt finds at the first one stays its choice.
/// Waits for a tray when there is none. Main thread. Dropping it removes the item.
class XEmbedIcon final {
public:
    /// `menu` may be null, and outlives the item.
    explicit XEmbedIcon(QtStatusMenu* menu);
    ~XEmbedIcon();

    void setIcon(const QIcon& icon);
    [[nodiscard]] QSystemTrayIcon& widget() { return icon_; }

private:
    QSystemTrayIcon icon_;
    std::unique_ptr<TrayMenuView> view_;
};

}  // namespace sonvara
