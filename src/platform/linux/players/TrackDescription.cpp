#include "platform/linux/players/TrackDescription.h"

#include <QUrl>

#include <algorithm>
#include <array>
#include <string_view>

namespace sonvara {
namespace {

// With and without what the word is for, as players of all toolkits have it.
constexpr std::array<std::string_view, 7> placeholders = {
    "unknown", "unknown artist", "unknown album", "unknown title", "<unknown>", "[unknown]", "(unknown)"};

constexpr std::array<std::string_view, 19> mediaSuffixes = {
    "aac", "aif", "aiff", "ape", "avi", "flac", "m4a", "m4v",  "mka", "mkv",
    "mov", "mp3", "mp4",  "oga", "ogg", "opus", "wav", "webm", "wma"};

QString lower(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).toLower();
}

bool isPlaceholder(const std::string& text)
{
    return std::ranges::any_of(placeholders, [found = lower(text)](std::string_view each) {
        return found == QLatin1String(each.data(), static_cast<qsizetype>(each.size()));
    });
}

void dropPlaceholder(std::string& text)
{
    if (isPlaceholder(text)) text.clear();
}

QUrl addressOf(const Track& track)
{
    // Some players name a path.
    const auto text = QString::fromStdString(track.url);
    return text.startsWith(QLatin1Char('/')) ? QUrl::fromLocalFile(text) : QUrl(text);
}

// Haruna makes file://127.0.0.1:8000/radio.mp3 of a station's address.
bool isFile(const Track& track)
{
    const auto address = addressOf(track);
    return address.isLocalFile() &&
           (address.host().isEmpty() || address.host() == QLatin1String("localhost"));
}

bool isElsewhere(const Track& track)
{
    return !track.url.empty() && !isFile(track);
}

std::string fileNameOf(const Track& track)
{
    return addressOf(track).fileName(QUrl::FullyDecoded).toStdString();
}

std::string folderOf(const Track& track)
{
    const auto folder = addressOf(track).adjusted(QUrl::RemoveFilename | QUrl::StripTrailingSlash);
    return folder.fileName(QUrl::FullyDecoded).toStdString();
}

bool hasMediaSuffix(std::string_view name)
{
    const auto dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0) return false;
    const auto suffix = lower(name.substr(dot + 1)).toStdString();
    return std::ranges::find(mediaSuffixes, suffix) != mediaSuffixes.end();
}

// "holiday_2019.": Sayonara cuts off the suffix and leaves its dot.
bool endsWhereSuffixWas(std::string_view name)
{
    return name.ends_with('.') && name.find('_') != std::string_view::npos;
}

std::string_view withoutSuffix(std::string_view name)
{
    return hasMediaSuffix(name) || endsWhereSuffixWas(name) ? name.substr(0, name.rfind('.')) : name;
}

std::string sayable(std::string_view fileName)
{
    std::string words(withoutSuffix(fileName.substr(fileName.rfind('/') + 1)));
    std::ranges::replace(words, '_', ' ');
    return words;
}

// "http://127.0.0.1:8000/radio", or the end of the track's address, with a slash in it.
bool isAddress(const Track& track)
{
    const auto& title = track.title;
    if (title.find_first_of(" \t") == std::string::npos && title.find("://") != std::string::npos)
        return true;
    return title.find('/') != std::string::npos && track.url.ends_with(title);
}

// "radio.mp3", of a station whose address is not told either: a file that plays has a length.
bool isEndOfUnknownAddress(const Track& track)
{
    return track.url.empty() && !track.hasLength && track.artist.empty() && hasMediaSuffix(track.title);
}

// "radio", of http://127.0.0.1:8000/radio.mp3. mpv tells a stream a length, of what it has fetched so far.
bool isEndOfAddress(const Track& track)
{
    const auto file = fileNameOf(track);
    return isElsewhere(track) && (track.title == file || track.title == withoutSuffix(file)) &&
           (!track.hasLength || hasMediaSuffix(file));
}

// Stations put their own name where the artist should be. A song's title then names its artist, too: "Artist - Song".
bool isStation(const Track& track)
{
    return track.artist == track.album || track.title.find(" - ") != std::string::npos ||
           track.artist == addressOf(track).host().toStdString();
}

// Quod Libet puts "[untitled FLAC]" behind it.
bool beginsWithFileName(const Track& track)
{
    const auto file = fileNameOf(track);
    return track.artist.empty() && hasMediaSuffix(file) && track.title.starts_with(file);
}

bool showsFileName(const Track& track)
{
    return isNamedAfterFile(track) ||
           (track.artist.empty() && (hasMediaSuffix(track.title) || endsWhereSuffixWas(track.title))) ||
           (!track.url.empty() && track.title == withoutSuffix(fileNameOf(track)));
}

}  // namespace

bool isStream(const Track& track)
{
    return !track.hasLength && isElsewhere(track);
}

bool isNamedAfterFile(const Track& track)
{
    // A long title is compared only with an address that can hold it.
    return track.url.size() >= track.title.size() && fileNameOf(track) == track.title;
}

Track tidied(Track track)
{
    dropPlaceholder(track.artist);
    dropPlaceholder(track.album);
    const bool isUntagged = track.artist.empty() || isNamedAfterFile(track);
    if (isUntagged && track.album == folderOf(track)) track.album.clear();
    if (isStream(track)) {
        if (isStation(track)) track.artist.clear();
        track.album.clear();
    }
    if (isEndOfAddress(track) || isEndOfUnknownAddress(track))
        track.title.clear();
    else if (isAddress(track) || beginsWithFileName(track) ||
             (track.artist.empty() && isPlaceholder(track.title)))
        track.title = isFile(track) ? sayable(fileNameOf(track)) : std::string();
    else if (showsFileName(track))
        track.title = sayable(track.title);
    return track;
}

}  // namespace sonvara
