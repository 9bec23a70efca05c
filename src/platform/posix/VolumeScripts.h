// The core's commands about volumes, on their way from the workers to the main thread.
#pragma once

#include "ports/ScriptRunner.h"
#include "volume/LoweredPlayers.h"

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace sonvara {

class MainQueue;
struct VolumeCommand;

/// A script runner that hands commands about volumes to `LoweredPlayers`, and every other script on. Of each of those
/// it tells `LoweredPlayers`, too: polls are its occasions to look at a player that does not signal.
///
/// A set that follows a read on the same thread is a duck of the very program that was read: that is how the
/// core lowers a player. Any other set is the core's way back. Reads wait for the player's answer; sets do
/// not wait.
class VolumeScripts final : public ScriptRunner {
public:
    /// Reads end as failed after `limit`. All references must outlive this.
    VolumeScripts(ScriptRunner& others, MainQueue& mainQueue, LoweredPlayers& loweredPlayers,
                  std::chrono::milliseconds limit)
        : others_(others),
          mainQueue_(mainQueue),
          loweredPlayers_(loweredPlayers),
          limit_(limit)
    {}

    [[nodiscard]] ScriptResult run(const std::string& source) override;

    /// Any thread: reads end as failed from now on, also those that wait.
    void close();

private:
    struct Answer {
        bool hasCome = false;
        std::optional<LoweredPlayers::Reading> reading;
    };

    [[nodiscard]] ScriptResult read(const std::string& player);
    void set(const VolumeCommand& command);

    ScriptRunner& others_;
    MainQueue& mainQueue_;
    LoweredPlayers& loweredPlayers_;
    std::chrono::milliseconds limit_;
    std::mutex mutex_;  ///< guards the rest, and all answers
    std::condition_variable changed_;
    std::map<std::thread::id, LoweredPlayers::Reading> readings_;  ///< which no set has followed yet
    bool isClosed_ = false;
};

}  // namespace sonvara
