#include "platform/linux/players/MprisVolumePrograms.h"

#include "platform/linux/players/MprisDecoder.h"
#include "platform/linux/players/MprisPlayers.h"

#include <QDBusVariant>

namespace sonvara {
namespace {

constexpr int limitInMilliseconds = 250;  // the program may be ending, and must not wait for a hung player

}  // namespace

MprisVolumePrograms::~MprisVolumePrograms()
{
    if (!bus_) return;
    const auto name = bus_->name();
    bus_.reset();
    QDBusConnection::disconnectFromBus(name);
}

std::optional<std::string> MprisVolumePrograms::programOf(const std::string& player)
{
    return players_.lastReadProgram(player);
}

std::optional<int> MprisVolumePrograms::volume(const std::string& program)
{
    const auto reply = ask(program, QStringLiteral("Get"), {});
    if (reply.type() != QDBusMessage::ReplyMessage) return std::nullopt;
    return players::decodeVolume(reply.arguments().value(0));
}

bool MprisVolumePrograms::setVolume(const std::string& program, int volume)
{
    const QVariant value = QVariant::fromValue(QDBusVariant(volume / 100.0));
    return ask(program, QStringLiteral("Set"), {value}).type() == QDBusMessage::ReplyMessage;
}

QDBusMessage MprisVolumePrograms::ask(const std::string& program, const QString& method,
                                      const QVariantList& more)
{
    const std::lock_guard lock(mutex_);
    if (!bus_) bus_ = connect_();
    auto question = QDBusMessage::createMethodCall(QString::fromStdString(program),
                                                   QStringLiteral("/org/mpris/MediaPlayer2"),
                                                   QStringLiteral("org.freedesktop.DBus.Properties"), method);
    question.setAutoStartService(false);
    question << QStringLiteral("org.mpris.MediaPlayer2.Player") << QStringLiteral("Volume");
    for (const auto& argument : more) question << argument;
    return bus_->call(question, QDBus::Block, limitInMilliseconds);
}

}  // namespace sonvara
