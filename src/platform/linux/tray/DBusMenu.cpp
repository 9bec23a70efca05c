#include "platform/linux/tray/DBusMenu.h"

#include "platform/linux/tray/HostMenuItems.h"

#include <QDBusMetaType>
#include <QGuiApplication>

#include <algorithm>

namespace sonvara {

namespace {

constexpr int rootId = 0;

QVariantMap only(const QVariantMap& properties, const QStringList& names)
{
    if (names.isEmpty()) return properties;
    QVariantMap chosen;
    for (const auto& name : names) {
        if (properties.contains(name)) chosen[name] = properties[name];
    }
    return chosen;
}

bool haveSameIds(const DBusMenuPropertiesList& a, const DBusMenuPropertiesList& b)
{
    return std::ranges::equal(a, b, [](const auto& left, const auto& right) { return left.id == right.id; });
}

QVariantMap rootProperties()
{
    return {{QStringLiteral("children-display"), QStringLiteral("submenu")}};
}

template <typename... Fields>
QDBusArgument& write(QDBusArgument& out, const Fields&... fields)
{
    out.beginStructure();
    (out << ... << fields);
    out.endStructure();
    return out;
}

template <typename... Fields>
const QDBusArgument& read(const QDBusArgument& in, Fields&... fields)
{
    in.beginStructure();
    (in >> ... >> fields);
    in.endStructure();
    return in;
}

}  // namespace

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
    return write(out, item.id, item.properties);
}

const QDBusArgument& operator>>(const QDBusArgument& in, DBusMenuProperties& item)
{
    return read(in, item.id, item.properties);
}

QDBusArgument& operator<<(QDBusArgument& out, const DBusMenuKeys& item)
{
    return write(out, item.id, item.keys);
}

const QDBusArgument& operator>>(const QDBusArgument& in, DBusMenuKeys& item)
{
    return read(in, item.id, item.keys);
}

QDBusArgument& operator<<(QDBusArgument& out, const DBusMenuEvent& event)
{
    return write(out, event.id, event.type, QDBusVariant(event.data), event.timestamp);
}

const QDBusArgument& operator>>(const QDBusArgument& in, DBusMenuEvent& event)
{
    QDBusVariant data;
    read(in, event.id, event.type, data, event.timestamp);
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

DBusMenu::DBusMenu(QtStatusMenu& menu, HostManner host, QObject* parent)
    : QDBusAbstractAdaptor(parent),
      menu_(menu),
      host_(host)
{
    registerDBusMenuTypes();
    shown_ = hostItems(menu_, host_.growsItems);
    connect(&menu_, &QtStatusMenu::itemsChanged, this, &DBusMenu::publishChanges);
}

QString DBusMenu::textDirection() const
{
    return QGuiApplication::isRightToLeft() ? QStringLiteral("rtl") : QStringLiteral("ltr");
}

void DBusMenu::publishChanges()
{
    const auto before = std::exchange(shown_, hostItems(menu_, host_.growsItems));
    if (haveSameIds(before, shown_)) {
        publishProperties(before);
        return;
    }
    ++changes_;
    Q_EMIT LayoutUpdated(++revision_, rootId);
}

/// Tells only what differs, so that a host can change an open menu in place.
void DBusMenu::publishProperties(const DBusMenuPropertiesList& before)
{
    DBusMenuPropertiesList updated;
    DBusMenuKeysList removed;
    for (qsizetype i = 0; i < shown_.size(); ++i) {
        const auto& old = before[i].properties;
        const auto& now = shown_[i].properties;
        QVariantMap changed;
        for (auto it = now.begin(); it != now.end(); ++it) {
            if (old.value(it.key()) != it.value()) changed[it.key()] = it.value();
        }
        QStringList gone;
        for (const auto& key : old.keys()) {
            if (!now.contains(key)) gone.append(key);
        }
        if (!changed.isEmpty()) updated.append({shown_[i].id, changed});
        if (!gone.isEmpty()) removed.append({shown_[i].id, gone});
    }
    if (updated.isEmpty() && removed.isEmpty()) return;
    ++changes_;
    Q_EMIT ItemsPropertiesUpdated(updated, removed);
}

uint DBusMenu::GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                         DBusMenuNode& layout)
{
    menu_.publish();
    layout = {parentId, {}, {}};
    if (parentId == rootId) {
        layout.properties = only(rootProperties(), propertyNames);
        if (recursionDepth == 0) return revision_;
        for (const auto& item : std::as_const(shown_)) {
            layout.children.append({item.id, only(item.properties, propertyNames), {}});
        }
        return revision_;
    }
    for (const auto& item : std::as_const(shown_)) {
        if (item.id == parentId) layout.properties = only(item.properties, propertyNames);
    }
    return revision_;
}

DBusMenuPropertiesList DBusMenu::GetGroupProperties(const QList<int>& ids, const QStringList& propertyNames)
{
    menu_.publish();
    DBusMenuPropertiesList found;
    if (ids.isEmpty() || ids.contains(rootId)) found.append({rootId, only(rootProperties(), propertyNames)});
    for (const auto& item : std::as_const(shown_)) {
        if (ids.isEmpty() || ids.contains(item.id))
            found.append({item.id, only(item.properties, propertyNames)});
    }
    return found;
}

QDBusVariant DBusMenu::GetProperty(int id, const QString& name)
{
    const auto found = GetGroupProperties({id}, {name});
    const auto value = found.isEmpty() ? QVariant() : found.first().properties.value(name);
    return QDBusVariant(value.isValid() ? value : QVariant(QString()));
}

bool DBusMenu::knows(int id) const
{
    return id == rootId || std::ranges::any_of(shown_, [id](const auto& item) { return item.id == id; });
}

void DBusMenu::handle(int id, const QString& type)
{
    if (type == QLatin1String("clicked")) {
        menu_.choose(id);
    } else if (id == rootId && type == QLatin1String("opened")) {
        if (!std::exchange(isAnnounced_, false)) menu_.willOpen();
    } else if (id == rootId && type == QLatin1String("closed")) {
        isAnnounced_ = false;
    }
}

void DBusMenu::Event(int id, const QString& eventId, const QDBusVariant&, uint)
{
    handle(id, eventId);
}

QList<int> DBusMenu::EventGroup(const DBusMenuEventList& events)
{
    QList<int> errors;
    for (const auto& event : events) {
        if (!knows(event.id)) errors.append(event.id);
        handle(event.id, event.type);
    }
    return errors;
}

bool DBusMenu::AboutToShow(int id)
{
    if (id != rootId) return false;
    const auto before = changes_;
    isAnnounced_ = true;
    menu_.willOpen();
    return changes_ != before;
}

QList<int> DBusMenu::AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors)
{
    QList<int> updatesNeeded;
    for (const int id : ids) {
        if (!knows(id)) idErrors.append(id);
        if (AboutToShow(id)) updatesNeeded.append(id);
    }
    return updatesNeeded;
}

}  // namespace sonvara
