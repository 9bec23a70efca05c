#include "speech/DJStyle.h"

#include <cstddef>
#include <random>

namespace sonvara {
namespace {

std::string_view randomOpener()
{
    std::random_device source;
    std::uniform_int_distribution<std::size_t> position(0, DJ::openers.size() - 1);
    return DJ::openers[position(source)];
}

}  // namespace

std::string DJ::offlineIntro(std::string_view track, std::string_view artist, std::string_view album,
                             bool favorited, std::optional<std::string_view> opener)
{
    std::string line(opener ? *opener : randomOpener());
    line.append(" ").append(track);
    if (!artist.empty()) line.append(" by ").append(artist);
    if (!album.empty()) line.append(", from ").append(album);
    line.append(".");
    if (favorited) line.append(" One of your favorites!");
    return line;
}

}  // namespace sonvara
