// One question over the bus, until it is answered.
#pragma once

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QObject>
#include <QVariantList>

#include <chrono>
#include <functional>
#include <optional>

namespace sonvara {

/// Hears the answer in its turn among the signals of the same connection, so that what a player has said before is never
/// taken for news. (A `QDBusPendingCallWatcher` may hear it later: when the answer is there before the watcher is, it
/// takes another turn of the event loop.) Main thread; deletes itself when it has been answered.
class BusQuestion final : public QObject {
    Q_OBJECT

public:
    /// The reply's arguments, empty if it is an error; absent if there is none within the limit.
    using Reply = std::optional<QVariantList>;
    using Answer = std::function<void(const Reply&)>;

    /// Sends `question`. Calls `answer` once, later, unless `asker`, which owns it, is destroyed before.
    static void ask(QDBusConnection& connection, const QDBusMessage& question,
                    std::chrono::milliseconds limit, const Answer& answer, QObject* asker);

private Q_SLOTS:
    void takeReply(const QDBusMessage& reply);
    void takeError(const QDBusError& error);

private:
    BusQuestion(Answer answer, QObject* asker);
    void end(const Reply& reply);

    Answer answer_;
};

}  // namespace sonvara
