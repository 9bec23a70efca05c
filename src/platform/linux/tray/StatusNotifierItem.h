// The tray item as a StatusNotifierItem on the session bus.
#pragma once

#include "platform/linux/tray/StatusNotifierTypes.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QObject>

#include <functional>
#include <memory>

namespace sonvara {

class QtStatusMenu;
class TrayMenuView;

/// One registration with the watcher that runs now; to be made anew when another one takes over.
/// Main thread. Dropping it removes the item from the tray.
class StatusNotifierItem final : public QObject {
    Q_OBJECT

public:
    using Pictures = std::function<NotifierImageList()>;

    /// `pictures` gives the icon at all sizes; `menu` may be null, and outlives the item.
    StatusNotifierItem(Pictures pictures, QtStatusMenu* menu);
    ~StatusNotifierItem() override;

    /// Tells the host to fetch the pictures again.
    void updateIcon();

    [[nodiscard]] NotifierImageList pictures() const { return pictures_(); }
    /// Shows the menu of our own at a place on the screen, for a host that does not draw menus.
    void popUp(int x, int y);

Q_SIGNALS:
    void iconChanged();

private:
    void enroll(const QString& service);

    Pictures pictures_;
    QtStatusMenu* const menu_;
    std::unique_ptr<TrayMenuView> ownMenu_;  ///< from the first time that the host asks for it
    QObject menuObject_;
    QDBusConnection bus_;
};

/// The protocol's view of the item; the capitalised members are its own.
class StatusNotifierAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category CONSTANT)
    Q_PROPERTY(QString Id READ id CONSTANT)
    Q_PROPERTY(QString Title READ title CONSTANT)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(int WindowId READ windowId CONSTANT)
    Q_PROPERTY(QString IconThemePath READ none CONSTANT)
    Q_PROPERTY(QString IconName READ none CONSTANT)
    Q_PROPERTY(QList<sonvara::NotifierImage> IconPixmap READ iconPixmap NOTIFY NewIcon)
    Q_PROPERTY(QString OverlayIconName READ none CONSTANT)
    Q_PROPERTY(QList<sonvara::NotifierImage> OverlayIconPixmap READ noImage CONSTANT)
    Q_PROPERTY(QString AttentionIconName READ none CONSTANT)
    Q_PROPERTY(QList<sonvara::NotifierImage> AttentionIconPixmap READ noImage CONSTANT)
    Q_PROPERTY(QString AttentionMovieName READ none CONSTANT)
    Q_PROPERTY(sonvara::NotifierToolTip ToolTip READ toolTip CONSTANT)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu CONSTANT)
    Q_PROPERTY(QDBusObjectPath Menu READ menu CONSTANT)

public:
    explicit StatusNotifierAdaptor(StatusNotifierItem& item);

    [[nodiscard]] QString category() const { return QStringLiteral("ApplicationStatus"); }
    [[nodiscard]] QString id() const;
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString status() const { return QStringLiteral("Active"); }
    [[nodiscard]] int windowId() const { return 0; }
    [[nodiscard]] QString none() const { return {}; }
    [[nodiscard]] NotifierImageList iconPixmap() const { return item_.pictures(); }
    [[nodiscard]] NotifierImageList noImage() const { return {}; }
    [[nodiscard]] NotifierToolTip toolTip() const { return {{}, {}, title(), {}}; }
    [[nodiscard]] bool itemIsMenu() const { return true; }  // the left click opens the menu, too
    [[nodiscard]] QDBusObjectPath menu() const;

public Q_SLOTS:
    void Activate(int x, int y) { item_.popUp(x, y); }
    void ContextMenu(int x, int y) { item_.popUp(x, y); }
    void SecondaryActivate(int, int) {}
    void Scroll(int, const QString&) {}

Q_SIGNALS:
    void NewIcon();
    void NewTitle();
    void NewAttentionIcon();
    void NewOverlayIcon();
    void NewToolTip();
    void NewStatus(const QString& status);

private:
    StatusNotifierItem& item_;
};

}  // namespace sonvara
