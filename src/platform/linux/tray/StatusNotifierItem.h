// The tray item as an org.kde.StatusNotifierItem on the session bus, and the values that it sends.
#pragma once

#include "platform/linux/tray/HostManner.h"

#include <QByteArray>
#include <QDBusAbstractAdaptor>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QImage>
#include <QList>
#include <QMetaType>
#include <QObject>
#include <QString>

#include <functional>
#include <memory>

namespace sonvara {

class QtStatusMenu;
class TrayMenuView;

/// A picture: (iiay), 32 bits a pixel, alpha first, not premultiplied, most significant byte first.
struct NotifierImage {
    int width = 0;
    int height = 0;
    QByteArray pixels;

    [[nodiscard]] static NotifierImage of(QImage image);
};
using NotifierImageList = QList<NotifierImage>;

/// (sa(iiay)ss)
struct NotifierToolTip {
    QString iconName;
    NotifierImageList image;
    QString title;
    QString description;
};

QDBusArgument& operator<<(QDBusArgument& out, const NotifierImage& image);
const QDBusArgument& operator>>(const QDBusArgument& in, NotifierImage& image);
QDBusArgument& operator<<(QDBusArgument& out, const NotifierToolTip& tip);
const QDBusArgument& operator>>(const QDBusArgument& in, NotifierToolTip& tip);

/// To be called before these types travel; may be called again.
void registerNotifierTypes();

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
    /// The texts that the menu shows cut, whole; empty when there are none.
    [[nodiscard]] QString details() const { return details_; }
    /// Shows the menu of our own, for a host that does not draw menus. Some hosts give a corner of their panel as
    /// its place (`x`, `y`), so it opens at the pointer wherever the display tells where that is.
    void popUp(int x, int y);
    /// The left click: answers `request` with an error where the host then opens its own menu, which is in the
    /// desktop's style and which Wayland places; else shows ours.
    void activate(int x, int y, const QDBusMessage& request);

Q_SIGNALS:
    void iconChanged();
    void detailsChanged();
    /// The watcher does not take the item.
    void refused();

private:
    void enroll(const QString& service);
    void updateDetails();

    Pictures pictures_;
    QtStatusMenu* const menu_;
    const HostManner host_ = HostManner::ofThisDesktop();
    QString details_;
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
    Q_PROPERTY(sonvara::NotifierToolTip ToolTip READ toolTip NOTIFY NewToolTip)
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
    [[nodiscard]] NotifierToolTip toolTip() const;
    [[nodiscard]] bool itemIsMenu() const { return true; }  // the left click opens the menu, too
    [[nodiscard]] QDBusObjectPath menu() const;

public Q_SLOTS:
    void Activate(int x, int y, const QDBusMessage& request) { item_.activate(x, y, request); }
    void ContextMenu(int x, int y) { item_.popUp(x, y); }
    void SecondaryActivate(int, int) {}
    void Scroll(int, const QString&) {}
    void ProvideXdgActivationToken(const QString& token);

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

Q_DECLARE_METATYPE(sonvara::NotifierImage)
Q_DECLARE_METATYPE(sonvara::NotifierToolTip)
