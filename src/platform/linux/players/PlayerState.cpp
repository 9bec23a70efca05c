#include "platform/linux/players/PlayerState.h"

#include <charconv>
#include <string_view>
#include <utility>

namespace sonvara {
namespace {

std::string percentDecoded(std::string_view text)
{
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned char byte = 0;
        const auto* const digits = text.data() + i + 1;
        if (text[i] == '%' && i + 2 < text.size() &&
            std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
            decoded.push_back(static_cast<char>(byte));
            i += 2;
        } else {
            decoded.push_back(text[i]);
        }
    }
    return decoded;
}

bool isFileName(const std::string& title, const std::string& url)
{
    const auto slash = url.rfind('/');
    const auto name = std::string_view(url).substr(slash == std::string::npos ? 0 : slash + 1);
    // A long title is compared only with a name that can decode to it.
    return name.size() >= title.size() && percentDecoded(name) == title;
}

bool contains(const std::string& text, std::string_view part)
{
    return text.find(part) != std::string::npos;
}

}  // namespace

void merge(PlayerState& state, StateChange change)
{
    if (change.track) state.track = std::move(*change.track);
    if (change.status) state.status = *change.status;
    if (change.status == PlaybackStatus::stopped) state.track = {};
}

bool sameSubject(const PlayerState& a, const PlayerState& b)
{
    return a.track.title == b.track.title && a.track.id == b.track.id && a.track.url == b.track.url;
}

bool isAdvertisement(const Track& track)
{
    if (contains(track.id, "/ad/") || track.id.starts_with("spotify:ad:")) return true;
    // A folder of the user's own may be called "ad".
    return contains(track.url, "/ad/") && !track.url.starts_with("file:");
}

bool isComplete(const Track& track)
{
    return !track.title.empty() && !track.artist.empty() && !isFileName(track.title, track.url);
}

Picture pictureOf(const PlayerState& state)
{
    const auto& track = state.track;
    if (state.status == PlaybackStatus::stopped || track.title.empty() || isAdvertisement(track)) return {};
    return {state.status, track.title, track.artist, track.album, track.loved};
}

}  // namespace sonvara
