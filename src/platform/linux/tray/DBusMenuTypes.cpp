#include "platform/linux/tray/DBusMenuTypes.h"

#include "platform/linux/style/QtText.h"

#include <QDBusMetaType>
#include <QDBusVariant>

namespace sonvara {

QDBusArgument& operator<<(QDBusArgument& out, const DBusMenuNode& node)
{
    out.beginStructure();
    out << node.id << node.properties;
    out.beginArray(QMetaType::fromType<QDBusVariant>());
    for (const auto& child : node.children) out << QDBusVariant(QVariant::fromValue(child));
    out.endArray();
    out.endStructure();
    return out;
}

const QDBusArgument& operator>>(const QDBusArgument& in, DBusMenuNode& node)
{
    in.beginStructure();
    in >> node.id >> node.properties;
    in.beginArray();
    while (!in.atEnd()) {
        QDBusVariant child;
        in >> child;
        node.children.append(qdbus_cast<DBusMenuNode>(child.variant()));
    }
    in.endArray();
    in.endStructure();
    return in;
}

QDBusArgument& operator<<(QDBusArgument& out, const DBusMenuProperties& item)
{
    out.beginStructure();
    out << item.id << item.properties;
    out.endStructure();
    return out;
}

const QDBusArgument& operator>>(const QDBusArgument& in, DBusMenuProperties& item)
{
    in.beginStructure();
    in >> item.id >> item.properties;
    in.endStructure();
    return in;
}

QDBusArgument& operator<<(QDBusArgument& out, const DBusMenuKeys& item)
{
    out.beginStructure();
    out << item.id << item.keys;
    out.endStructure();
    return out;
}

const QDBusArgument& operator>>(const QDBusArgument& in, DBusMenuKeys& item)
{
    in.beginStructure();
    in >> item.id >> item.keys;
    in.endStructure();
    return in;
}

QDBusArgument& operator<<(QDBusArgument& out, const DBusMenuEvent& event)
{
    out.beginStructure();
    out << event.id << event.type << QDBusVariant(event.data) << event.timestamp;
    out.endStructure();
    return out;
}

const QDBusArgument& operator>>(const QDBusArgument& in, DBusMenuEvent& event)
{
    QDBusVariant data;
    in.beginStructure();
    in >> event.id >> event.type >> data >> event.timestamp;
    in.endStructure();
    event.data = data.variant();
    return in;
}

void registerDBusMenuTypes()
{
    qDBusRegisterMetaType<DBusMenuNode>();
    qDBusRegisterMetaType<DBusMenuProperties>();
    qDBusRegisterMetaType<DBusMenuPropertiesList>();
    qDBusRegisterMetaType<DBusMenuKeys>();
    qDBusRegisterMetaType<DBusMenuKeysList>();
    qDBusRegisterMetaType<DBusMenuEvent>();
    qDBusRegisterMetaType<DBusMenuEventList>();
}

QString dbusMenuLabel(const QString& title)
{
    // A single underscore would mark the next character as the access key and vanish.
    return QString(title).replace(QLatin1Char('_'), QLatin1String("__"));
}

QVariantMap dbusMenuProperties(const MenuItem& item)
{
    if (item.isSeparator) return {{QStringLiteral("type"), QStringLiteral("separator")}};
    QVariantMap properties;
    const auto& title = item.attributedTitle ? item.attributedTitle->text : item.title;
    properties[QStringLiteral("label")] = dbusMenuLabel(toQt(title));
    properties[QStringLiteral("enabled")] = item.isEnabled;
    properties[QStringLiteral("visible")] = true;
    if (item.isChecked) {
        properties[QStringLiteral("toggle-type")] = QStringLiteral("checkmark");
        properties[QStringLiteral("toggle-state")] = *item.isChecked ? 1 : 0;
    }
    return properties;
}

}  // namespace sonvara
