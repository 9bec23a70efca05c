// Follows the players on the bus: what they signal, and what they answer when they are asked.
#pragma once

#include "platform/linux/players/MprisBus.h"
#include "platform/linux/players/NotificationThrottle.h"
#include "platform/linux/players/PlayerDirectory.h"
#include "ports/NotificationCenter.h"
#include "ports/SystemLog.h"

#include <QObject>
#include <QStringList>
#include <QTimer>

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>

namespace sonvara {

/// The one place that knows what the players do. Main thread only; nothing blocks.
///
/// What a player signals counts at once. Each poll asks every player, and the answers correct what is believed:
/// so no belief is older than one poll, whatever a player fails to signal. A player is asked one question at
/// a time; one that has not answered is asked again by the next poll and is not believed meanwhile. Nobody waits
/// for it.
class PlayerWatch final : public QObject {
public:
    using Know = std::function<void(PlayerKind, const std::string&)>;
    using Post = std::function<void(const Notification&)>;

    /// Calls `know` with what is known of a player, in the form of a poll script's answer, and then `post` for every
    /// notification of it. Nothing is heard, asked or logged before the first poll.
    PlayerWatch(MprisBus& bus, Know know, Post post, SystemLog& log);

    /// Asks all players of that kind. What their answers change is known and posted then.
    void poll(PlayerKind kind);

    [[nodiscard]] const PlayerDirectory& directory() const { return directory_; }

private:
    template <typename Message>
    using Take = void (PlayerWatch::*)(Player&, const Message&);

    void start();
    void askNextOwner();
    void add(const std::string& name, const std::string& owner);
    void takeOwnerChange(const std::string& name, const std::string& before, const std::string& now);
    void takeSignal(const std::string& owner, const std::optional<StateMessage>& changed,
                    const QStringList& invalidated);
    void takeTimeout();
    void takeLoss();

    void ask(Player& player);
    void askState(Player& player);
    template <typename Message>
    [[nodiscard]] std::function<void(const Message&)> answerOf(const Player& player, Take<Message> take);
    void takeProcess(Player& player, const MprisBus::Reply& reply);
    void takeIntroduction(Player& player, const MprisBus::Reply& reply);
    void takeState(Player& player, const StateMessage& answer);

    void update();
    [[nodiscard]] std::string answer(PlayerKind kind) const;
    void setTimer();

    MprisBus& bus_;
    Know know_;
    Post post_;
    Logger logger_;
    bool isStarted_ = false;
    PlayerDirectory directory_;
    std::map<PlayerKind, NotificationThrottle> throttles_{{PlayerKind::music, {}}, {PlayerKind::spotify, {}}};
    std::deque<std::string> unownedNames_;  // that were there at the start
    QTimer timer_;
};

}  // namespace sonvara
