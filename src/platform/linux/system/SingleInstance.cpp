#include "platform/linux/system/SingleInstance.h"

#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusMessage>
#include <QVariantMap>
#include <utility>

namespace sonvara {

namespace {

constexpr const char* busName = SONVARA_IDENTIFIER;
constexpr const char* interfaceName = "org.freedesktop.Application";
constexpr int answerLimit = 2000;  // milliseconds
constexpr int claimAttempts = 3;   // for a first program that ends while it is asked

// By the rule of the interface: the name with slashes.
QString objectPath()
{
    return '/' + QString(busName).replace('.', '/');
}

}  // namespace

SingleInstance::SingleInstance(QDBusConnection bus, std::function<void()> activated)
    : bus_(std::move(bus)),
      activated_(std::move(activated))
{}

SingleInstance::~SingleInstance()
{
    if (!bus_.isConnected()) return;
    bus_.unregisterService(busName);
    bus_.unregisterObject(objectPath());
}

bool SingleInstance::claim()
{
    if (!bus_.isConnected()) return true;
    bus_.registerVirtualObject(objectPath(), this);  // before the name, which others wait for
    for (int attempt = 0; attempt < claimAttempts; ++attempt) {
        if (bus_.registerService(busName)) break;
        if (askFirst()) return false;
    }
    return true;
}

// Whether there is a first program. One that does not answer is still the first.
bool SingleInstance::askFirst()
{
    auto call = QDBusMessage::createMethodCall(busName, objectPath(), interfaceName, "Activate");
    call.setArguments({QVariantMap()});
    call.setAutoStartService(false);
    const auto answer = bus_.call(call, QDBus::Block, answerLimit);
    return QDBusError(answer).type() != QDBusError::ServiceUnknown;
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
    activated_();
    return true;
}

}  // namespace sonvara
