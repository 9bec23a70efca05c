#include "platform/linux/tray/StatusNotifierItem.h"

#include "platform/linux/tray/DBusMenu.h"
#include "platform/linux/tray/TrayHostWatcher.h"
#include "platform/linux/tray/TrayMenuView.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QGuiApplication>

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

StatusNotifierItem::StatusNotifierItem(Pictures pictures, QtStatusMenu* menu)
    : pictures_(std::move(pictures)),
      menu_(menu),
      bus_(newConnection())
{
    registerNotifierTypes();
    new StatusNotifierAdaptor(*this);
    if (menu != nullptr) {
        new DBusMenu(*menu, &menuObject_);
        bus_.registerObject(menuPath, &menuObject_);
    }
    bus_.registerObject(itemPath, this);
    // A sandbox may forbid the name; the connection's own one serves as well.
    const auto name = serviceName();
    enroll(bus_.registerService(name) ? name : bus_.baseService());
}

StatusNotifierItem::~StatusNotifierItem()
{
    QDBusConnection::disconnectFromBus(bus_.name());
}

void StatusNotifierItem::enroll(const QString& service)
{
    auto message = QDBusMessage::createMethodCall(
        TrayHostWatcher::service(), QStringLiteral("/StatusNotifierWatcher"), TrayHostWatcher::service(),
        QStringLiteral("RegisterStatusNotifierItem"));
    message << service;
    bus_.send(message);
}

void StatusNotifierItem::updateIcon()
{
    Q_EMIT iconChanged();
}

void StatusNotifierItem::popUp(int x, int y)
{
    if (menu_ == nullptr) return;
    // Made anew with every change of the items, which nobody sees where the host draws the menu.
    if (!ownMenu_) ownMenu_ = std::make_unique<TrayMenuView>(*menu_);
    ownMenu_->popUp(QPoint(x, y));
}

StatusNotifierAdaptor::StatusNotifierAdaptor(StatusNotifierItem& item)
    : QDBusAbstractAdaptor(&item),
      item_(item)
{
    connect(&item, &StatusNotifierItem::iconChanged, this, &StatusNotifierAdaptor::NewIcon);
}

QString StatusNotifierAdaptor::id() const
{
    return QCoreApplication::applicationName();
}

QString StatusNotifierAdaptor::title() const
{
    return QGuiApplication::applicationDisplayName();
}

QDBusObjectPath StatusNotifierAdaptor::menu() const
{
    return QDBusObjectPath(menuPath);
}

}  // namespace sonvara
