// A tray host of the StatusNotifier kind, as far as items see it.
#pragma once

#include "helpers/EventLoop.h"
#include "platform/linux/tray/StatusNotifierItem.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QStringList>

namespace sonvara::test {

/// Owns the watcher's name as long as it lives and remembers what registers.
class FakeWatcher final : public QDBusVirtualObject {
public:
    FakeWatcher()
    {
        bus.registerVirtualObject("/StatusNotifierWatcher", this);
        bus.registerService(name);
    }
    ~FakeWatcher() override { QDBusConnection::disconnectFromBus(bus.name()); }

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        if (message.member() != "RegisterStatusNotifierItem") return false;
        items.append(message.arguments().value(0).toString());
        connection.send(message.createReply());
        return true;
    }

    QDBusMessage call(const QString& interface, const QString& method, const QVariantList& arguments)
    {
        auto question =
            QDBusMessage::createMethodCall(items.last(), "/StatusNotifierItem", interface, method);
        question.setArguments(arguments);
        QDBusPendingCallWatcher answer(bus.asyncCall(question));
        eventually([&] { return answer.isFinished(); });
        return answer.reply();
    }

    /// A property of the item that registered last.
    QVariant property(const QString& key)
    {
        const auto answer =
            call("org.freedesktop.DBus.Properties", "Get", {"org.kde.StatusNotifierItem", key});
        return answer.arguments().value(0).value<QDBusVariant>().variant();
    }

    NotifierImageList pictures() { return qdbus_cast<NotifierImageList>(property("IconPixmap")); }

    const QString name = "org.kde.StatusNotifierWatcher";
    QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "fake-watcher");
    QStringList items;
};

}  // namespace sonvara::test
