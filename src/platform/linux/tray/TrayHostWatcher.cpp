#include "platform/linux/tray/TrayHostWatcher.h"

#include <QDBusConnectionInterface>
#include <QSystemTrayIcon>

namespace sonvara {

QString TrayHostWatcher::service()
{
    return QStringLiteral("org.kde.StatusNotifierWatcher");
}

TrayHostWatcher::TrayHostWatcher(std::chrono::milliseconds wait)
    : watcher_(service(), QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForOwnerChange)
{
    connect(&watcher_, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& newOwner) { ownerChanged(newOwner); });
    if (auto* bus = QDBusConnection::sessionBus().interface()) {
        hasNotifierHost_ = bus->isServiceRegistered(service());
    }
    wait_.setSingleShot(true);
    connect(&wait_, &QTimer::timeout, this, [this] {
        if (!hasHost()) Q_EMIT hostMissing();
    });
    wait_.start(wait);
}

void TrayHostWatcher::ownerChanged(const QString& newOwner)
{
    hasNotifierHost_ = !newOwner.isEmpty();
    Q_EMIT notifierHostChanged();
}

bool TrayHostWatcher::hasHost() const
{
    return hasNotifierHost_ || QSystemTrayIcon::isSystemTrayAvailable();
}

}  // namespace sonvara
