// Offers a menu to the tray host over com.canonical.dbusmenu, which draws it; and the values that travel.
#pragma once

#include "platform/linux/tray/HostManner.h"
#include "platform/linux/tray/QtStatusMenu.h"
#include "ports/StatusBar.h"

#include <QDBusAbstractAdaptor>
#include <QDBusArgument>
#include <QDBusVariant>
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

/// The D-Bus object of a menu, attached to `parent`, which the caller registers with a connection.
/// Main thread. `menu` must outlive it. The capitalised members are the protocol's own; their lists are spelt
/// out, for Qt knows no alias of a type by its name and would not relay a signal that has one.
class DBusMenu final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version CONSTANT)
    Q_PROPERTY(QString TextDirection READ textDirection CONSTANT)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath CONSTANT)

public:
    DBusMenu(QtStatusMenu& menu, HostManner host, QObject* parent);

    [[nodiscard]] uint version() const { return 3; }
    [[nodiscard]] QString textDirection() const;
    [[nodiscard]] QString status() const { return QStringLiteral("normal"); }
    [[nodiscard]] QStringList iconThemePath() const { return {}; }

public Q_SLOTS:
    uint GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                   sonvara::DBusMenuNode& layout);
    QList<sonvara::DBusMenuProperties> GetGroupProperties(const QList<int>& ids,
                                                          const QStringList& propertyNames);
    QDBusVariant GetProperty(int id, const QString& name);
    void Event(int id, const QString& eventId, const QDBusVariant& data, uint timestamp);
    QList<int> EventGroup(const QList<sonvara::DBusMenuEvent>& events);
    bool AboutToShow(int id);
    QList<int> AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors);

Q_SIGNALS:
    void LayoutUpdated(uint revision, int parent);
    void ItemsPropertiesUpdated(const QList<sonvara::DBusMenuProperties>& updatedProps,
                                const QList<sonvara::DBusMenuKeys>& removedProps);
    void ItemActivationRequested(int id, uint timestamp);

private:
    void publishChanges();
    void publishProperties(const DBusMenuPropertiesList& before);
    void handle(int id, const QString& type);
    [[nodiscard]] bool knows(int id) const;

    QtStatusMenu& menu_;
    const HostManner host_;
    DBusMenuPropertiesList shown_;
    uint revision_ = 1;
    uint changes_ = 0;
    bool isAnnounced_ = false;  // AboutToShow came, so "opened" tells nothing new
};

}  // namespace sonvara

Q_DECLARE_METATYPE(sonvara::DBusMenuNode)
Q_DECLARE_METATYPE(sonvara::DBusMenuProperties)
Q_DECLARE_METATYPE(sonvara::DBusMenuKeys)
Q_DECLARE_METATYPE(sonvara::DBusMenuEvent)
