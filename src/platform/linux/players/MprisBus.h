// The questions that are asked over the session bus, and the signals that are heard on it.
#pragma once

#include "platform/linux/players/MprisDecoder.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <QVariantList>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace sonvara {

/// Plain messages only: no proxy objects, whose making may wait for a hung player. Main thread;
/// nothing blocks, and nobody is started by being asked.
class MprisBus final : public QObject {
    Q_OBJECT

public:
    /// The reply's arguments, empty if it is an error; absent if there is none within the limit.
    using Reply = std::optional<QVariantList>;
    using Answer = std::function<void(const Reply&)>;
    /// What a player has answered; empty if that is an error, no answer within the limit, or no properties.
    using StateAnswer = std::function<void(const StateMessage&)>;

    /// The limit for every question. It is over before the next poll, which asks again.
    static constexpr std::chrono::milliseconds limit{2000};

    explicit MprisBus(QDBusConnection connection);

    [[nodiscard]] bool isConnected() const { return connection_.isConnected(); }

    /// Begins to send the signals below.
    void listen();

    /// Each calls `answer` once, later, unless this object is destroyed before.
    void askNames(const Answer& answer);
    void askOwner(const std::string& name, const Answer& answer);
    void askProcess(const std::string& owner, const Answer& answer);
    void askIntroduction(const std::string& owner, const Answer& answer);
    void askState(const std::string& owner, const StateAnswer& answer);

    /// Sends a volume (1.0 is full) behind the questions of before, and ahead of those that follow. Nobody
    /// hears whether it was accepted: players accept what they do not do.
    void setVolume(const std::string& owner, double volume);

Q_SIGNALS:
    /// A player's name has another owner; an empty owner is none. A name without an owner is told after
    /// `Debounce::delay`: if the same connection takes it again until then, nothing has happened.
    void ownerChanged(const std::string& name, const std::string& before, const std::string& now);
    /// The connection `owner` says what of a player has changed, absent if that cannot be read, and which properties
    /// have values that it does not tell.
    void stateSignalled(const std::string& owner, const std::optional<StateMessage>& changed,
                        const QStringList& invalidated);
    /// Somebody has asked: ahead of the answer itself, and the same.
    void stateAnswered(const std::string& owner, const StateMessage& answer);
    /// The bus has gone, for good.
    void lost();

private Q_SLOTS:
    void takeOwnerChange(const QString& name, const QString& before, const QString& now);
    void takePropertiesChanged(const QDBusMessage& message);
    void takeDisconnected();

private:
    void ask(QDBusMessage question, const Answer& answer);
    void askDaemon(const QString& method, const std::string& name, const Answer& answer);
    void askProperties(const std::string& owner, const QString& interface, const Answer& answer);

    struct Loss {
        QString owner;
        std::unique_ptr<QTimer> timer;
    };

    QDBusConnection connection_;
    std::map<QString, Loss> losses_;  // by name
};

}  // namespace sonvara
