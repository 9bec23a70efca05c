// Keeps the picture of the players up to date from what is heard and asked on the bus.
#pragma once

#include "platform/linux/players/MprisBus.h"
#include "platform/linux/players/PictureFeed.h"
#include "platform/linux/players/PlayerDirectory.h"
#include "platform/linux/players/PollBoard.h"
#include "platform/linux/players/ScriptCommand.h"
#include "ports/NotificationCenter.h"
#include "ports/SystemLog.h"

#include <QObject>
#include <QTimer>

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace sonvara {

/// The one place that knows what the players do. Main thread only; nothing blocks.
///
/// While no player changes, it sleeps: it has no timer of its own and asks only when it is polled,
/// and then only the player that is meant. One that tells of its new tracks by itself is asked only
/// now and then, in case it has begun to keep something back.
class PlayerWatch final : public QObject {
public:
    using Post = std::function<void(const Notification&)>;
    using Answer = std::function<void(ScriptResult)>;

    /// How long the last answer of a player that tells of its tracks by itself stands for the next polls.
    static constexpr std::chrono::minutes trust{5};

    /// Calls `post` for every notification of a player. What the players do already at the start is
    /// no change: the first poll tells it.
    PlayerWatch(MprisBus& bus, Post post, SystemLog& log);

    /// Asks the player that is meant for its state, and answers with what is settled of it.
    void poll(PlayerKind kind, const Answer& answer);

    /// The answers to polls that need no question. May be read on any thread.
    [[nodiscard]] const PollBoard& pollBoard() const { return board_; }

    [[nodiscard]] const PlayerDirectory& directory() const { return directory_; }

private:
    using Refreshed = std::function<void(bool)>;
    // The player that a question went to; another one may own the connection when the answer comes.
    struct Asked {
        std::string owner;
        std::uint64_t serial;
    };
    struct WaitingPoll {
        PlayerKind kind;
        Answer answer;
    };

    void start();
    void takeNames(const QVariantList& answer);
    void takeOwner(const std::string& name, const std::string& owner);
    void takeOwnerChange(const std::string& name, const std::string& before, const std::string& now);
    void introduce(Player& player);
    void takeAnswer(const Asked& asked, const std::function<void(Introduction&)>& learn);
    void takeSignal(const std::string& owner, const QVariantList& arguments);
    void takeLoss();

    void refresh(const std::string& owner, Refreshed refreshed);
    void takeState(const std::string& owner, const QVariantList& answer);

    void update();
    void begin();
    void setTimer();
    void answerWaiting();
    void publish();
    [[nodiscard]] std::optional<PollBoard::Known> known(PlayerKind kind) const;

    MprisBus& bus_;
    Post post_;
    Logger logger_;
    PlayerDirectory directory_;
    std::array<PictureFeed, 2> feeds_{PictureFeed(PlayerKind::music), PictureFeed(PlayerKind::spotify)};
    std::map<std::string, std::vector<Refreshed>> refreshing_;  // by owner; questions under way
    std::vector<WaitingPoll> waiting_;                          // until enough is known
    int unownedNames_ = 0;                                      // names found whose owner is not known yet
    bool begun_ = false;                                        // what there was at the start is known
    PollBoard board_;
    QTimer timer_;
};

}  // namespace sonvara
