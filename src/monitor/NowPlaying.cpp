#include "monitor/NowPlaying.h"

#include <utility>

namespace sonvara {
namespace {

template <typename T>
T valueOr(const UserInfo& info, const char* key, T fallback)
{
    const auto found = info.find(key);
    if (found == info.end()) return fallback;
    const auto* value = std::get_if<T>(&found->second);
    return value ? *value : fallback;
}

std::string string(const UserInfo& info, const char* key)
{
    return valueOr(info, key, std::string());
}

}  // namespace

std::optional<NowPlaying> parseEvent(const Notification& notification)
{
    if (!notification.userInfo) return std::nullopt;
    const auto& info = *notification.userInfo;
    NowPlaying record;
    record.source = notification.name == musicNotification ? musicSource : spotifySource;
    record.name = string(info, "Name");
    const auto state = string(info, "Player State");
    if (record.name.empty()) {
        if (state != "Stopped") return std::nullopt;
        return record;
    }
    record.artist = string(info, "Artist");
    record.album = string(info, "Album");
    record.isPlaying = state == "Playing";
    record.favorited = valueOr(info, "Loved", false);
    return record;
}

std::optional<NowPlaying> parsePollOutput(const std::string& source, const std::string& output,
                                          std::size_t fields)
{
    auto track = poll::read(output, fields);
    if (!track) return std::nullopt;
    return NowPlaying{std::move(track->title), std::move(track->artist),       std::move(track->album),
                      track->isPlaying,        track->isLoved.value_or(false), source};
}

std::optional<NowPlaying> pick(const std::optional<NowPlaying>& music,
                               const std::optional<NowPlaying>& spotify,
                               const std::optional<NowPlaying>& fallback)
{
    if (music && music->isPlaying) return music;
    if (spotify && spotify->isPlaying) return spotify;
    if (music) return music;
    if (spotify) return spotify;
    return fallback;
}

}  // namespace sonvara
