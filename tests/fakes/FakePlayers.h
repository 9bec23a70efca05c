// Two music players that answer the system's scripts.
#pragma once

#include "fakes/VirtualTime.h"
#include "ports/NotificationCenter.h"
#include "ports/ScriptRunner.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace sonvara::test {

/// What one player would answer. Scripts other than the known ones fail the test, as do scripts that
/// are run on the main thread.
class FakePlayers final : public ScriptRunner {
public:
    struct Player {
        bool isRunning = false;
        bool isPlaying = false;
        std::string title;  ///< empty: no current track
        std::string artist;
        std::string album;
        bool isLoved = false;
        int volume = 100;
        std::optional<ScriptResult> pollResult;        ///< given to polls in place of the above
        std::optional<ScriptResult> volumeReadResult;  ///< given to volume reads
        VirtualTime::Duration latency{0};              ///< how long each script takes
    };

    explicit FakePlayers(VirtualTime& time) : time_(time) {}

    [[nodiscard]] ScriptResult run(const std::string& source) override;

    /// What `player` posts of its track and state in a notification called `name`.
    [[nodiscard]] static Notification notificationOf(const Player& player, const std::string& name);

    Player music;
    Player spotify;
    std::vector<std::string> scripts;  ///< every script, in the order in which they were run
    /// The volume commands among them, shortened: "Music?" for a read, "Music=35" for a write.
    std::vector<std::string> volumeCommands;

private:
    [[nodiscard]] static ScriptResult poll(const Player& player, bool hasLoved);
    [[nodiscard]] std::optional<ScriptResult> volumeCommand(const std::string& name, Player& player,
                                                            const std::string& source);

    VirtualTime& time_;
};

}  // namespace sonvara::test
