// The questions that are asked over the session bus, and the signals that are heard on it.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QVariantList>

#include <chrono>
#include <functional>
#include <string>

class QDBusServiceWatcher;

namespace sonvara {

/// Plain messages only: no proxy objects, whose making may wait for a hung player. Main thread;
/// nothing blocks, and nobody is started by being asked.
class MprisBus final : public QObject {
    Q_OBJECT

public:
    /// What was answered: the reply's arguments. Empty if the answer is an error, is no message at
    /// all within the limit, or holds nothing.
    using Answer = std::function<void(const QVariantList&)>;

    /// The limit for every question. Two of them in a row fit into the time a script may take.
    static constexpr std::chrono::milliseconds limit{400};

    explicit MprisBus(QDBusConnection connection);

    [[nodiscard]] bool isConnected() const { return connection_.isConnected(); }

    /// Begins to send the signals below.
    void listen();

    /// Each calls `answer` once, later, unless this object is destroyed before.
    void askNames(const Answer& answer);
    void askOwner(const std::string& name, const Answer& answer);
    void askProcess(const std::string& owner, const Answer& answer);
    void askIntroduction(const std::string& owner, const Answer& answer);
    void askState(const std::string& owner, const Answer& answer);

    /// Sends a volume (1.0 is full) behind the questions of before, and ahead of those that follow. Nobody
    /// hears whether it was accepted: players accept what they do not do.
    void setVolume(const std::string& owner, double volume);

Q_SIGNALS:
    /// A player's name has another owner; an empty owner is none.
    void ownerChanged(const std::string& name, const std::string& before, const std::string& now);
    /// The connection `owner` says that a player's properties have changed. The arguments are as
    /// they came.
    void stateSignalled(const std::string& owner, const QVariantList& arguments);
    /// The same, but it was asked, by whomever: ahead of the answer itself. Empty without one.
    void stateAnswered(const std::string& owner, const QVariantList& arguments);
    /// The bus has gone, for good.
    void lost();

private Q_SLOTS:
    void takePropertiesChanged(const QDBusMessage& message);
    void takeDisconnected();

private:
    void ask(QDBusMessage question, const std::function<void(const QDBusMessage&)>& answer);
    void askDaemon(const QString& method, const std::string& name, const Answer& answer);
    void askProperties(const std::string& owner, const QString& interface, const Answer& answer);

    QDBusConnection connection_;
};

}  // namespace sonvara
