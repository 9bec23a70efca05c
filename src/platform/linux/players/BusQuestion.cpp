#include "platform/linux/players/BusQuestion.h"

#include <utility>

namespace sonvara {

BusQuestion::BusQuestion(Answer answer, QObject* asker) : QObject(asker), answer_(std::move(answer)) {}

void BusQuestion::ask(QDBusConnection& connection, const QDBusMessage& question,
                      std::chrono::milliseconds limit, const Answer& answer, QObject* asker)
{
    auto* asked = new BusQuestion(answer, asker);
    const bool isSent =
        connection.callWithCallback(question, asked, SLOT(takeReply(QDBusMessage)),
                                    SLOT(takeError(QDBusError)), static_cast<int>(limit.count()));
    if (isSent) return;
    const auto fail = [asked] { asked->end(std::nullopt); };
    QMetaObject::invokeMethod(asked, fail, Qt::QueuedConnection);
}

void BusQuestion::takeReply(const QDBusMessage& reply)
{
    end(reply.arguments());
}

void BusQuestion::takeError(const QDBusError& error)
{
    const bool isNone = error.type() == QDBusError::NoReply || error.type() == QDBusError::Disconnected;
    end(isNone ? Reply() : Reply(QVariantList()));
}

void BusQuestion::end(const Reply& reply)
{
    deleteLater();
    answer_(reply);
}

}  // namespace sonvara
