// A tray host of the StatusNotifier kind, as far as items see it.
#pragma once

#include "helpers/EventLoop.h"
#include "platform/linux/tray/StatusNotifierItem.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QStringList>

namespace sonvara::test {

/// Owns the watcher's name as long as it lives and remembers what registers.
class FakeWatcher final : public QDBusVirtualObject {
public:
    explicit FakeWatcher(bool isHostThere = true) : hasHost(isHostThere)
    {
        bus.registerVirtualObject("/StatusNotifierWatcher", this);
        bus.registerService(name);
    }
    ~FakeWatcher() override { QDBusConnection::disconnectFromBus(bus.name()); }

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        ++questions;
        if (message.member() == "Get" && message.arguments().value(1) == "IsStatusNotifierHostRegistered") {
            if (isSlow) {
                held.append(message);
                return true;
            }
            return answer(message, hasHost);
        }
        if (message.member() != "RegisterStatusNotifierItem") return false;
        items.append(message.arguments().value(0).toString());
        if (items.size() <= refusals)
            return connection.send(message.createErrorReply(QDBusError::InvalidArgs, "not this one"));
        return connection.send(message.createReply());
    }

    /// The answer to whether a host is there.
    bool answer(const QDBusMessage& question, bool isThere)
    {
        return bus.send(question.createReply(QVariant::fromValue(QDBusVariant(isThere))));
    }

    /// A host comes or goes while the watcher stays.
    void setHost(bool isThere)
    {
        hasHost = isThere;
        bus.send(QDBusMessage::createSignal("/StatusNotifierWatcher", name,
                                            isThere ? "StatusNotifierHostRegistered"
                                                    : "StatusNotifierHostUnregistered"));
    }

    /// Asks the item that registered last.
    QDBusMessage call(const QString& interface, const QString& method, const QVariantList& arguments,
                      const QString& path = "/StatusNotifierItem")
    {
        auto question = QDBusMessage::createMethodCall(items.last(), path, interface, method);
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
    qsizetype refusals = 0;  ///< of the first items
    bool hasHost;
    bool isSlow = false;       ///< questions for a host are kept, for the test to answer
    QList<QDBusMessage> held;  ///< these
    int questions = 0;         ///< of all kinds
};

}  // namespace sonvara::test
