// The values that com.canonical.dbusmenu sends, and how a title becomes a label there.
#pragma once

#include "ports/StatusBar.h"

#include <QDBusArgument>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QVariantMap>

namespace sonvara {

/// One node of the menu with its children: (ia{sv}av).
struct DBusMenuNode {
    int id = 0;
    QVariantMap properties;
    QList<DBusMenuNode> children;
};

/// Properties of one item: (ia{sv}).
struct DBusMenuProperties {
    int id = 0;
    QVariantMap properties;
};
using DBusMenuPropertiesList = QList<DBusMenuProperties>;

/// Names of properties of one item that have gone: (ias).
struct DBusMenuKeys {
    int id = 0;
    QStringList keys;
};
using DBusMenuKeysList = QList<DBusMenuKeys>;

/// One event that a host reports: (isvu).
struct DBusMenuEvent {
    int id = 0;
    QString type;
    QVariant data;
    uint timestamp = 0;
};
using DBusMenuEventList = QList<DBusMenuEvent>;

QDBusArgument& operator<<(QDBusArgument& out, const DBusMenuNode& node);
const QDBusArgument& operator>>(const QDBusArgument& in, DBusMenuNode& node);
QDBusArgument& operator<<(QDBusArgument& out, const DBusMenuProperties& item);
const QDBusArgument& operator>>(const QDBusArgument& in, DBusMenuProperties& item);
QDBusArgument& operator<<(QDBusArgument& out, const DBusMenuKeys& item);
const QDBusArgument& operator>>(const QDBusArgument& in, DBusMenuKeys& item);
QDBusArgument& operator<<(QDBusArgument& out, const DBusMenuEvent& event);
const QDBusArgument& operator>>(const QDBusArgument& in, DBusMenuEvent& event);

/// To be called before these types travel; may be called again.
void registerDBusMenuTypes();

/// The label that makes a host show exactly `title`.
[[nodiscard]] QString dbusMenuLabel(const QString& title);

/// The properties that show `item`.
[[nodiscard]] QVariantMap dbusMenuProperties(const MenuItem& item);

}  // namespace sonvara

Q_DECLARE_METATYPE(sonvara::DBusMenuNode)
Q_DECLARE_METATYPE(sonvara::DBusMenuProperties)
Q_DECLARE_METATYPE(sonvara::DBusMenuKeys)
Q_DECLARE_METATYPE(sonvara::DBusMenuEvent)
