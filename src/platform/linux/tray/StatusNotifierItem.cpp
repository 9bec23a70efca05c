#include "platform/linux/tray/StatusNotifierItem.h"

#include "platform/linux/tray/HostMenuItems.h"
#include "platform/linux/tray/TrayHostWatcher.h"
#include "platform/linux/tray/TrayMenuView.h"

#include <QCoreApplication>
#include <QCursor>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QGuiApplication>
#include <QtEndian>

namespace sonvara {

namespace {

const QString menuPath = QStringLiteral("/MenuBar");
const QString itemPath = QStringLiteral("/StatusNotifierItem");

/// The protocol fixes the object's path, so every item needs a connection of its own.
QDBusConnection newConnection()
{
    static int count = 0;
    return QDBusConnection::connectToBus(QDBusConnection::SessionBus,
                                         QStringLiteral("tray-item-%1").arg(++count));
}

QString serviceName()
{
    static int count = 0;
    return QStringLiteral("org.kde.StatusNotifierItem-%1-%2")
        .arg(QCoreApplication::applicationPid())
        .arg(++count);
}

}  // namespace

NotifierImage NotifierImage::of(QImage image)
{
    const auto argb = std::move(image).convertToFormat(QImage::Format_ARGB32);
    NotifierImage result{argb.width(), argb.height(), QByteArray(argb.sizeInBytes(), Qt::Uninitialized)};
    // The lines have no padding: a pixel has the size of the alignment.
    qToBigEndian<quint32>(argb.constBits(), argb.sizeInBytes() / 4, result.pixels.data());
    return result;
}

QDBusArgument& operator<<(QDBusArgument& out, const NotifierImage& image)
{
    out.beginStructure();
    out << image.width << image.height << image.pixels;
    out.endStructure();
    return out;
}

const QDBusArgument& operator>>(const QDBusArgument& in, NotifierImage& image)
{
    in.beginStructure();
    in >> image.width >> image.height >> image.pixels;
    in.endStructure();
    return in;
}

QDBusArgument& operator<<(QDBusArgument& out, const NotifierToolTip& tip)
{
    out.beginStructure();
    out << tip.iconName << tip.image << tip.title << tip.description;
    out.endStructure();
    return out;
}

const QDBusArgument& operator>>(const QDBusArgument& in, NotifierToolTip& tip)
{
    in.beginStructure();
    in >> tip.iconName >> tip.image >> tip.title >> tip.description;
    in.endStructure();
    return in;
}

void registerNotifierTypes()
{
    qDBusRegisterMetaType<NotifierImage>();
    qDBusRegisterMetaType<NotifierImageList>();
    qDBusRegisterMetaType<NotifierToolTip>();
}

StatusNotifierItem::StatusNotifierItem(Pictures pictures, QtStatusMenu* menu)
    : pictures_(std::move(pictures)),
      menu_(menu),
      bus_(newConnection())
{
    registerNotifierTypes();
    new StatusNotifierAdaptor(*this);
    if (menu != nullptr) {
        new DBusMenu(*menu, host_, &menuObject_);
        connect(menu, &QtStatusMenu::itemsChanged, this, &StatusNotifierItem::updateDetails);
        details_ = cutTexts(*menu, host_.wrapsToolTip);
        bus_.registerObject(menuPath, &menuObject_);
    }
    bus_.registerObject(itemPath, this);
    // A sandbox may forbid the name; the connection's own one serves as well.
    const auto name = serviceName();
    enroll(bus_.registerService(name) ? name : bus_.baseService());
}

StatusNotifierItem::~StatusNotifierItem()
{
    // The connection is closed by the bus's own thread, later, which would look at what is registered there.
    bus_.unregisterObject(itemPath);
    bus_.unregisterObject(menuPath);
    QDBusConnection::disconnectFromBus(bus_.name());
}

void StatusNotifierItem::enroll(const QString& service)
{
    auto message = QDBusMessage::createMethodCall(
        TrayHostWatcher::service(), QStringLiteral("/StatusNotifierWatcher"), TrayHostWatcher::service(),
        QStringLiteral("RegisterStatusNotifierItem"));
    message << service;
    auto* call = new QDBusPendingCallWatcher(bus_.asyncCall(message), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call, service] {
        call->deleteLater();
        if (!call->isError() || call->error().type() == QDBusError::NoReply) return;
        service == bus_.baseService() ? Q_EMIT refused() : enroll(bus_.baseService());
    });
}

void StatusNotifierItem::updateIcon()
{
    Q_EMIT iconChanged();
}

void StatusNotifierItem::updateDetails()
{
    const auto before = std::exchange(details_, cutTexts(*menu_, host_.wrapsToolTip));
    if (details_ != before) Q_EMIT detailsChanged();
}

void StatusNotifierItem::popUp(int x, int y)
{
    if (menu_ == nullptr) return;
    // Made anew with every change of the items, which nobody sees where the host draws the menu.
    if (!ownMenu_) ownMenu_ = std::make_unique<TrayMenuView>(*menu_);
    const bool isPointerKnown = !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
    ownMenu_->popUp(isPointerKnown ? QCursor::pos() : QPoint(x, y));
}

void StatusNotifierItem::activate(int x, int y, const QDBusMessage& request)
{
    if (!host_.opensMenuOnRefusal) {
        popUp(x, y);
        return;
    }
    request.setDelayedReply(true);  // the answer is here, not with the return
    bus_.send(request.createErrorReply(QDBusError::UnknownMethod, QStringLiteral("The item is a menu")));
}

StatusNotifierAdaptor::StatusNotifierAdaptor(StatusNotifierItem& item)
    : QDBusAbstractAdaptor(&item),
      item_(item)
{
    connect(&item, &StatusNotifierItem::iconChanged, this, &StatusNotifierAdaptor::NewIcon);
    connect(&item, &StatusNotifierItem::detailsChanged, this, &StatusNotifierAdaptor::NewToolTip);
}

QString StatusNotifierAdaptor::id() const
{
    return QCoreApplication::applicationName();
}

QString StatusNotifierAdaptor::title() const
{
    return QGuiApplication::applicationDisplayName();
}

NotifierToolTip StatusNotifierAdaptor::toolTip() const
{
    return {{}, {}, title(), item_.details().toHtmlEscaped()};  // hosts read marks in it
}

// Comes before the click that it belongs to. The next window that is raised takes it, on Wayland.
void StatusNotifierAdaptor::ProvideXdgActivationToken(const QString& token)
{
    qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
}

QDBusObjectPath StatusNotifierAdaptor::menu() const
{
    return QDBusObjectPath(menuPath);
}

}  // namespace sonvara
