// Knows what is playing, from the players' notifications and from polls, and publishes it.
#pragma once

#include "monitor/NowPlaying.h"
#include "ports/NotificationCenter.h"
#include "ports/Queues.h"
#include "ports/SystemLog.h"
#include "support/AtomicSharedPtr.h"
#include "support/Observable.h"
#include "support/Subscription.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace sonvara {

struct Platform;

/// One current picture of what the players play. Each poll (at start, every three seconds and after
/// every notification) and each notification assigns all six properties, changed or not.
///
/// Main thread, but for the polls, which run on the global queue and hand their result back.
class MusicMonitor final : public std::enable_shared_from_this<MusicMonitor> {
public:
    /// Makes a monitor that already watches and polls.
    [[nodiscard]] static std::shared_ptr<MusicMonitor> create(Platform& platform);

    Observable<std::string> trackName;
    Observable<std::string> artistName;
    Observable<std::string> albumName;
    Observable<bool> isPlaying;
    Observable<bool> isFavorited;
    Observable<std::string> source;

    /// Reads a player's notification. A value of an unexpected type counts as missing. Absent when there is
    /// no title, unless the player says that it has stopped: then the record has only its source. Any thread.
    [[nodiscard]] static std::optional<NowPlaying> parseEvent(const Notification& notification);

    /// Reads a poll script's answer, as `poll::read` does. Any thread.
    [[nodiscard]] static std::optional<NowPlaying>
    parsePollOutput(const std::string& source, const std::string& output, std::size_t fields);

    /// Chooses among two poll results and the last notification: a playing player before a paused one,
    /// Music before Spotify, the fallback only when neither poll gave anything. Any thread.
    [[nodiscard]] static std::optional<NowPlaying> pick(const std::optional<NowPlaying>& music,
                                                        const std::optional<NowPlaying>& spotify,
                                                        const std::optional<NowPlaying>& fallback);

    /// Starts the poll timer and the first poll.
    void startMonitoring();

    /// Starts one poll of both players; polls may overlap, and the last one to finish counts.
    void updateTrackInfo();

private:
    explicit MusicMonitor(Platform& platform);
    void observePlayers();
    void playbackChanged(const Notification& notification);
    void poll();
    [[nodiscard]] std::optional<NowPlaying> query(const std::string& player, const std::string& script,
                                                  std::size_t fields) const;
    void applyLater(std::optional<NowPlaying> record);
    void apply(const std::optional<NowPlaying>& record);

    Platform& platform_;
    std::shared_ptr<RepeatingTimer> timer_;
    Logger logger_;
    AtomicSharedPtr<NowPlaying> lastEventTrack_;  ///< the fallback of every poll; written on the main thread
    std::vector<Subscription> observers_;
};

}  // namespace sonvara
