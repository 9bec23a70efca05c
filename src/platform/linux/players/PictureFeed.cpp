#include "platform/linux/players/PictureFeed.h"

#include "support/PlayerScripts.h"

#include <algorithm>

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

Notification notificationOf(PlayerKind kind, const Picture& picture)
{
    UserInfo info{{"Player State", textOf(picture.status)},
                  {"Name", picture.title},
                  {"Artist", picture.artist},
                  {"Album", picture.album},
                  {"Loved", picture.loved}};
    return {kind == PlayerKind::music ? musicNotification : spotifyNotification, std::move(info)};
}

std::optional<Notification> PictureFeed::follow(const Picture& picture, Time now)
{
    deadline_.reset();
    if (picture == told_) return std::nullopt;
    const auto turn = used_ - (burst - 1) * interval;
    if (now < turn) {
        deadline_ = turn;
        return std::nullopt;
    }
    told_ = picture;
    used_ = std::max(used_, now) + interval;
    return notificationOf(kind_, picture);
}

}  // namespace sonvara
