#include "platform/linux/players/MprisBus.h"

#include "platform/linux/players/Debounce.h"
#include "platform/linux/players/PlayerIdentity.h"

#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

#include <utility>

namespace sonvara {
namespace {

const QString daemonName = QStringLiteral("org.freedesktop.DBus");
const QString daemonPath = QStringLiteral("/org/freedesktop/DBus");
const QString playerPath = QStringLiteral("/org/mpris/MediaPlayer2");
const QString rootInterface = QStringLiteral("org.mpris.MediaPlayer2");
const QString playerInterface = QStringLiteral("org.mpris.MediaPlayer2.Player");
const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");
const QString volumeProperty = QStringLiteral("Volume");

QDBusMessage propertiesCall(const std::string& owner, const QString& method)
{
    return QDBusMessage::createMethodCall(QString::fromStdString(owner), playerPath, propertiesInterface,
                                          method);
}

MprisBus::Reply replyIn(const QDBusMessage& message)
{
    if (message.type() == QDBusMessage::ReplyMessage) return message.arguments();
    const auto error = QDBusError(message).type();
    if (error == QDBusError::NoReply || error == QDBusError::Disconnected) return std::nullopt;
    return QVariantList();
}

}  // namespace

MprisBus::MprisBus(QDBusConnection connection) : connection_(std::move(connection)) {}

void MprisBus::listen()
{
    // No sender is named: one rule hears all players, and a player may own several names.
    connection_.connect(QString(), playerPath, propertiesInterface, QStringLiteral("PropertiesChanged"),
                        {playerInterface}, QString(), this, SLOT(takePropertiesChanged(QDBusMessage)));
    connection_.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                        QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                        SLOT(takeDisconnected()));
    // The asterisk hears the whole namespace, and nothing of the other programs' comings and goings.
    const auto everyName = QString::fromUtf8(namePrefix.data(), namePrefix.size()) + QLatin1Char('*');
    auto* names =
        new QDBusServiceWatcher(everyName, connection_, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(names, &QDBusServiceWatcher::serviceOwnerChanged, this, &MprisBus::takeOwnerChange);
}

void MprisBus::askNames(const Answer& answer)
{
    ask(QDBusMessage::createMethodCall(daemonName, daemonPath, daemonName, QStringLiteral("ListNames")),
        answer);
}

void MprisBus::askOwner(const std::string& name, const Answer& answer)
{
    askDaemon(QStringLiteral("GetNameOwner"), name, answer);
}

void MprisBus::askProcess(const std::string& owner, const Answer& answer)
{
    askDaemon(QStringLiteral("GetConnectionUnixProcessID"), owner, answer);
}

void MprisBus::askIntroduction(const std::string& owner, const Answer& answer)
{
    askProperties(owner, rootInterface, answer);
}

void MprisBus::askState(const std::string& owner, const StateAnswer& answer)
{
    askProperties(owner, playerInterface, [this, owner, answer](const Reply& reply) {
        const auto state = decodeMessage(reply.value_or(QVariantList()).value(0)).value_or(StateMessage());
        Q_EMIT stateAnswered(owner, state);
        answer(state);
    });
}

void MprisBus::setVolume(const std::string& owner, double volume)
{
    auto command = propertiesCall(owner, QStringLiteral("Set"));
    command.setArguments({playerInterface, volumeProperty, QVariant::fromValue(QDBusVariant(volume))});
    command.setAutoStartService(false);
    connection_.send(command);
}

// MPD's voice on the bus gives its name up when its volume cannot be set, and takes it again at once.
void MprisBus::takeOwnerChange(const QString& name, const QString& before, const QString& now)
{
    auto owner = before;
    if (const auto lost = losses_.extract(name)) owner = lost.mapped().owner;
    if (now == owner) return;
    const auto tell = [this, name, owner, now] {
        Q_EMIT ownerChanged(name.toStdString(), owner.toStdString(), now.toStdString());
    };
    if (!now.isEmpty()) {
        tell();
        return;
    }
    auto timer = std::make_unique<QTimer>();
    timer->setSingleShot(true);
    connect(timer.get(), &QTimer::timeout, this, [this, name, tell] {
        losses_.extract(name).mapped().timer.release()->deleteLater();
        tell();
    });
    timer->start(Debounce::delay);
    losses_[name] = {owner, std::move(timer)};
}

void MprisBus::takePropertiesChanged(const QDBusMessage& message)
{
    const auto arguments = message.arguments();
    Q_EMIT stateSignalled(message.service().toStdString(), decodeMessage(arguments.value(1)),
                          arguments.value(2).toStringList());
}

void MprisBus::takeDisconnected()
{
    Q_EMIT lost();
}

void MprisBus::ask(QDBusMessage question, const Answer& answer)
{
    question.setAutoStartService(false);
    const auto call = connection_.asyncCall(question, static_cast<int>(limit.count()));
    auto* watcher = new QDBusPendingCallWatcher(call, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [answer](QDBusPendingCallWatcher* finished) {
        finished->deleteLater();
        answer(replyIn(finished->reply()));
    });
}

void MprisBus::askDaemon(const QString& method, const std::string& name, const Answer& answer)
{
    auto question = QDBusMessage::createMethodCall(daemonName, daemonPath, daemonName, method);
    question.setArguments({QString::fromStdString(name)});
    ask(question, answer);
}

void MprisBus::askProperties(const std::string& owner, const QString& interface, const Answer& answer)
{
    auto question = propertiesCall(owner, QStringLiteral("GetAll"));
    question.setArguments({interface});
    ask(question, answer);
}

}  // namespace sonvara
