#include "platform/linux/players/PlayerReports.h"

#include "support/PlayerScripts.h"

#include <utility>

namespace sonvara {
namespace {

std::string textOf(PlaybackStatus status)
{
    switch (status) {
    case PlaybackStatus::playing: return "Playing";
    case PlaybackStatus::paused: return "Paused";
    case PlaybackStatus::stopped: break;
    }
    return "Stopped";
}

}  // namespace

std::string_view nameOf(PlayerKind kind)
{
    return kind == PlayerKind::music ? musicSource : spotifySource;
}

std::optional<PlayerKind> polledPlayer(std::string_view source)
{
    if (source == musicPollScript()) return PlayerKind::music;
    if (source == spotifyPollScript()) return PlayerKind::spotify;
    return std::nullopt;
}

std::string pollAnswer(PlayerKind kind, const PlayerSnapshot& snapshot)
{
    if (!snapshot.hasTrack()) return poll::failed;
    poll::Track track{snapshot.title, snapshot.artist, snapshot.album,
                      snapshot.status == PlaybackStatus::playing, std::nullopt};
    if (kind == PlayerKind::music) track.isLoved = snapshot.loved;
    return poll::write(track);
}

Notification notificationOf(PlayerKind kind, const PlayerSnapshot& snapshot)
{
    UserInfo info{{"Player State", textOf(snapshot.status)},
                  {"Name", snapshot.title},
                  {"Artist", snapshot.artist},
                  {"Album", snapshot.album},
                  {"Loved", snapshot.loved}};
    return {kind == PlayerKind::music ? musicNotification : spotifyNotification, std::move(info)};
}

}  // namespace sonvara
