#include "FakePlayer.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include <gtest/gtest.h>

#include <utility>

namespace sonvara::test {
namespace {

const auto playerPath = QStringLiteral("/org/mpris/MediaPlayer2");
const auto playerInterface = QStringLiteral("org.mpris.MediaPlayer2.Player");
const auto prefix = QStringLiteral("org.mpris.MediaPlayer2.");

}  // namespace

QVariantMap metadataOf(const QString& title, const QStringList& artists, const QString& album)
{
    return {{"mpris:trackid", QVariant::fromValue(QDBusObjectPath("/track/1"))},
            {"xesam:title", title},
            {"xesam:artist", artists},
            {"xesam:album", album}};
}

FakePlayer::FakePlayer(QDBusConnection connection, const QStringList& names)
    : connection_(std::move(connection))
{
    EXPECT_TRUE(connection_.registerVirtualObject(playerPath, this));
    for (const auto& name : names) own(name);
}

FakePlayer::~FakePlayer()
{
    // Questions that nobody will answer now refuse themselves over the connection, which must be there then.
    connection_.unregisterObject(playerPath);
    QCoreApplication::removePostedEvents(this);
    QDBusConnection::disconnectFromBus(connection_.name());
}

void FakePlayer::own(const QString& name)
{
    EXPECT_TRUE(connection_.registerService(prefix + name));
}

void FakePlayer::disown(const QString& name)
{
    EXPECT_TRUE(connection_.unregisterService(prefix + name));
}

void FakePlayer::change(const QVariantMap& properties)
{
    set(properties);
    signal({playerInterface, properties, QStringList()});
}

void FakePlayer::signal(const QVariantList& arguments)
{
    auto message =
        QDBusMessage::createSignal(playerPath, "org.freedesktop.DBus.Properties", "PropertiesChanged");
    message.setArguments(arguments);
    EXPECT_TRUE(connection_.send(message));
}

void FakePlayer::invalidate(const QString& property)
{
    signal({playerInterface, QVariantMap(), QStringList{property}});
}

void FakePlayer::play(const QString& title)
{
    change({{"PlaybackStatus", "Playing"}, {"Metadata", metadataOf(title)}});
}

QString FakePlayer::introspect(const QString&) const
{
    return {};
}

bool FakePlayer::handleMessage(const QDBusMessage& message, const QDBusConnection&)
{
    ++questions_;
    message.setDelayedReply(true);
    if (onQuestion && !onQuestion(message)) return true;
    if (manner != Manner::hanging) connection_.send(answer(message));
    return true;
}

QDBusMessage FakePlayer::answer(const QDBusMessage& question)
{
    switch (manner) {
    case Manner::failing: return question.createErrorReply(QDBusError::Failed, "not today");
    case Manner::babbling: return question.createReply(QVariantList{42, QStringList{"what?"}});
    default: return properAnswer(question);
    }
}

QDBusMessage FakePlayer::properAnswer(const QDBusMessage& question)
{
    const auto arguments = question.arguments();
    const bool isPlayer = arguments.value(0).toString() == playerInterface;
    const auto property = arguments.value(1).toString();
    if (question.member() == "GetAll") return question.createReply(isPlayer ? properties_ : introduction);
    if (question.member() == "Get" && isPlayer && properties_.contains(property))
        return question.createReply(QVariant::fromValue(QDBusVariant(properties_.value(property))));
    if (question.member() == "Set" && isPlayer && !refusesVolume) {
        properties_[property] = arguments.value(2).value<QDBusVariant>().variant();
        return question.createReply();
    }
    return question.createErrorReply(QDBusError::PropertyReadOnly, "no");
}

}  // namespace sonvara::test
