// What polls are told without a question to the player, handed from the main thread to the workers.
#pragma once

#include "platform/linux/players/ScriptCommand.h"
#include "platform/linux/players/Settler.h"

#include <map>
#include <mutex>
#include <optional>

namespace sonvara {

/// Any thread. A poll that is answered here wakes neither the main thread nor the player.
class PollBoard {
public:
    struct Known {
        std::optional<Picture> picture;  ///< absent: the player does not run
        Time until;                      ///< afterwards somebody must ask
    };

    void put(PlayerKind kind, std::optional<Known> known);

    /// The answer to a poll of `kind` at the time `now`; absent if it takes a question.
    [[nodiscard]] std::optional<ScriptResult> read(PlayerKind kind, Time now) const;

private:
    mutable std::mutex mutex_;
    std::map<PlayerKind, Known> known_;  // under the mutex
};

}  // namespace sonvara
