#include "platform/linux/system/SingleInstance.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusMessage>
#include <QVariantMap>
#include <utility>

namespace sonvara {

namespace {

constexpr const char* busName = SONVARA_IDENTIFIER;
constexpr const char* interfaceName = "org.freedesktop.Application";
constexpr const char* activationToken = "XDG_ACTIVATION_TOKEN";
constexpr int answerLimit = 500;  // milliseconds
constexpr int claimAttempts = 4;  // a first program that ends does so within a second

// By the rule of the interface: the name with slashes.
QString objectPath()
{
    return '/' + QString(busName).replace('.', '/');
}

// What the desktop gave this start so that a window may come to the front: on Wayland nobody else may say so.
QVariantMap platformData()
{
    const auto token = qEnvironmentVariable(activationToken);
    return token.isEmpty() ? QVariantMap() : QVariantMap{{QStringLiteral("activation-token"), token}};
}

QString activationTokenIn(const QDBusMessage& request)
{
    // Reading a map out of anything else ends the program in the bus library.
    if (request.signature() != QLatin1String("a{sv}")) return {};
    const auto data = qdbus_cast<QVariantMap>(request.arguments().value(0));
    return data.value(QStringLiteral("activation-token")).toString();
}

}  // namespace

SingleInstance::SingleInstance(QDBusConnection bus, std::function<void()> activated)
    : bus_(std::move(bus)),
      activated_(std::move(activated))
{}

void SingleInstance::release()
{
    if (!bus_.isConnected()) return;
    bus_.unregisterObject(objectPath());  // who has asked already gets an error, and asks again
    if (std::exchange(isFirst_, false)) bus_.unregisterService(busName);
}

bool SingleInstance::claim()
{
    if (!bus_.isConnected()) return true;
    bus_.registerVirtualObject(objectPath(), this);  // before the name, which others wait for
    for (int attempt = 0; attempt < claimAttempts; ++attempt) {
        isFirst_ = bus_.registerService(busName);
        if (isFirst_) return true;
        if (firstAnswers()) return false;
    }
    return false;  // one that does not answer is still the first
}

// One that ends does not, or with an error: then it is to be seen whether it still has the name.
bool SingleInstance::firstAnswers()
{
    auto call = QDBusMessage::createMethodCall(busName, objectPath(), interfaceName, "Activate");
    call.setArguments({platformData()});
    call.setAutoStartService(false);
    const auto answer = bus_.call(call, QDBus::Block, answerLimit);
    return answer.type() == QDBusMessage::ReplyMessage;
}

QString SingleInstance::introspect(const QString& /*path*/) const
{
    return QStringLiteral(
        "<interface name=\"org.freedesktop.Application\"><method name=\"Activate\">"
        "<arg type=\"a{sv}\" name=\"platform_data\" direction=\"in\"/></method></interface>");
}

bool SingleInstance::handleMessage(const QDBusMessage& message, const QDBusConnection& connection)
{
    if (message.member() != "Activate" || message.interface() != interfaceName) return false;
    connection.send(message.createReply());
    const auto token = activationTokenIn(message);
    if (!token.isEmpty())
        qputenv(activationToken, token.toUtf8());  // Qt takes it for the next window that is raised
    activated_();
    return true;
}

}  // namespace sonvara
