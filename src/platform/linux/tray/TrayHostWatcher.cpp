#include "platform/linux/tray/TrayHostWatcher.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QSystemTrayIcon>

namespace sonvara {

namespace {
const QString path = QStringLiteral("/StatusNotifierWatcher");
}

QString TrayHostWatcher::service()
{
    return QStringLiteral("org.kde.StatusNotifierWatcher");
}

TrayHostWatcher::TrayHostWatcher(std::chrono::milliseconds wait)
    : watcher_(service(), QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForOwnerChange)
{
    connect(&watcher_, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& newOwner) { ownerChanged(newOwner); });
    // No sender is named: Qt would ask who that is now, and wait for the answer.
    for (const auto* signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"})
        QDBusConnection::sessionBus().connect(QString(), path, service(), QLatin1String(signal), this,
                                              SLOT(ask()));
    ask();
    wait_.setSingleShot(true);
    connect(&wait_, &QTimer::timeout, this, [this] {
        if (!hasHost()) Q_EMIT hostMissing();
    });
    wait_.start(wait);
}

void TrayHostWatcher::ownerChanged(const QString& newOwner)
{
    hasNotifierHost_.reset();  // another watcher must be told of the item, even if this one had a host, too
    newOwner.isEmpty() ? take(false) : ask();
}

void TrayHostWatcher::ask()
{
    auto question = QDBusMessage::createMethodCall(
        service(), path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question << service() << QStringLiteral("IsStatusNotifierHostRegistered");
    question.setAutoStartService(false);
    auto* call = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call, number = ++questions_] {
        call->deleteLater();
        if (number != questions_) return;  // a later answer is on its way
        const QDBusPendingReply<QDBusVariant> reply = *call;
        if (reply.error().type() == QDBusError::NoReply)
            ask();
        else
            take(reply.isValid() && reply.value().variant().toBool());
    });
}

void TrayHostWatcher::take(bool hasNotifierHost)
{
    ++questions_;  // what was asked before has been decided
    if (hasNotifierHost_ == hasNotifierHost) return;
    hasNotifierHost_ = hasNotifierHost;
    Q_EMIT notifierHostChanged();
}

bool TrayHostWatcher::hasHost() const
{
    return hasNotifierHost_.value_or(false) || QSystemTrayIcon::isSystemTrayAvailable();
}

}  // namespace sonvara
