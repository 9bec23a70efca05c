// The scripts to all players, each player's on a lane of its own.
#pragma once

#include "platform/macos/players/MusicTerms.h"
#include "platform/macos/players/PlayerLane.h"
#include "ports/Queues.h"
#include "ports/ScriptRunner.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <string>

namespace sonvara {

class ScriptComponent;

/// A player that hangs, or about which the user is being asked, holds up its own lane. No worker waits for longer than
/// `pollLimit`: a poll then counts as failed, and its script stays the one that waits.
class ScriptLanes final : public ScriptRunner {
public:
    /// Runs a task on a thread of its own, which may be blocked for minutes.
    using Post = std::function<void(Task)>;

    static constexpr std::chrono::milliseconds pollLimit{2000};

    /// `makeThread` gives each player a thread. The component must outlive this, and this the threads' tasks.
    ScriptLanes(ScriptComponent& component, const std::function<Post(const std::string& player)>& makeThread);

    /// A poll, or another script that is no command; a text without one of the players is no script.
    [[nodiscard]] ScriptResult run(const std::string& source) override;

    /// Any thread: the same without waiting. The callback comes once, on any thread.
    void poll(const std::string& source, PlayerLane::Done done);
    /// Any thread: a script about the volume, before all polls. The callback comes once, on any thread.
    void command(const std::string& player, std::string source, PlayerLane::Done done);

    /// Waits until every command has been run. False: a player hangs.
    [[nodiscard]] bool finish(std::chrono::milliseconds limit);

private:
    [[nodiscard]] PlayerLane::Run lane(const std::string& player, Post post);
    [[nodiscard]] ScriptResult perform(const std::string& player, const std::string& source);

    ScriptComponent& component_;
    MusicTerms terms_;
    std::mutex mutex_;  ///< guards the number of commands under way
    std::condition_variable changed_;
    int commands_ = 0;
    std::map<std::string, PlayerLane, std::less<>> lanes_;  ///< never changes
};

}  // namespace sonvara
