#include "platform/linux/players/MprisDecoder.h"

#include "support/Text.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include <algorithm>
#include <cmath>
#include <utility>

namespace sonvara {
namespace {

constexpr double loudest = 100;  // some players go beyond 1, which is full; none goes as far as this

QVariant plain(const QVariant& value)
{
    auto result = value;
    // A variant within a variant is allowed on the bus, to any depth that its limits leave.
    while (result.metaType() == QMetaType::fromType<QDBusVariant>())
        result = result.value<QDBusVariant>().variant();
    return result;
}

std::optional<double> decodeNumber(const QVariant& wrapped)
{
    const auto value = plain(wrapped);
    switch (value.typeId()) {
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort: return value.toDouble();
    default: return std::nullopt;
    }
}

// Several artists come as a list; some players send one text instead.
std::string decodeTexts(const QVariant& wrapped)
{
    const auto value = plain(wrapped);
    if (value.typeId() != QMetaType::QStringList && value.typeId() != QMetaType::QVariantList)
        return decodeText(value);
    std::string texts;
    for (const auto& each : value.toList()) {
        const auto text = decodeText(each);
        if (text.empty()) continue;
        if (!texts.empty()) texts.append(", ");
        texts.append(text);
    }
    return texts;
}

std::optional<PlaybackStatus> decodeStatus(const QVariant& value)
{
    const auto text = decodeText(value);
    if (text == "Playing") return PlaybackStatus::playing;
    if (text == "Paused") return PlaybackStatus::paused;
    if (text == "Stopped") return PlaybackStatus::stopped;
    return std::nullopt;
}

}  // namespace

std::optional<QVariantMap> decodeMap(const QVariant& wrapped)
{
    const auto value = plain(wrapped);
    if (value.typeId() == QMetaType::QVariantMap) return value.toMap();
    if (value.metaType() != QMetaType::fromType<QDBusArgument>()) return std::nullopt;
    // Reading a map out of anything else ends the program in the bus library.
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != QLatin1String("a{sv}")) return std::nullopt;
    return qdbus_cast<QVariantMap>(argument);
}

std::string decodeText(const QVariant& wrapped)
{
    const auto value = plain(wrapped);
    std::string whole;
    if (value.typeId() == QMetaType::QString) whole = value.toString().toStdString();
    // A track's id should be a path, and is a plain text in some players.
    if (value.metaType() == QMetaType::fromType<QDBusObjectPath>())
        whole = value.value<QDBusObjectPath>().path().toStdString();
    return std::string(text::trim(whole));
}

Track decodeTrack(const QVariantMap& metadata)
{
    Track track;
    track.title = decodeText(metadata.value(QStringLiteral("xesam:title")));
    // Celluloid, cmus and VLC tell a stream's song here, and the station in the title.
    for (const auto* const name : {"icy-title", "cmus:stream_title", "vlc:nowplaying"}) {
        const auto song = decodeText(metadata.value(QLatin1String(name)));
        if (!song.empty()) track.title = song;
    }
    track.artist = decodeTexts(metadata.value(QStringLiteral("xesam:artist")));
    track.album = decodeText(metadata.value(QStringLiteral("xesam:album")));
    track.loved = decodeNumber(metadata.value(QStringLiteral("xesam:userRating"))) == 1.0;
    track.id = decodeText(metadata.value(QStringLiteral("mpris:trackid")));
    track.url = decodeText(metadata.value(QStringLiteral("xesam:url")));
    track.hasLength = decodeNumber(metadata.value(QStringLiteral("mpris:length"))).value_or(0) > 0;
    return track;
}

StateChange decodeState(const QVariantMap& properties)
{
    StateChange change;
    change.status = decodeStatus(properties.value(QStringLiteral("PlaybackStatus")));
    if (const auto metadata = decodeMap(properties.value(QStringLiteral("Metadata"))))
        change.track = decodeTrack(*metadata);
    return change;
}

std::optional<StateMessage> decodeMessage(const QVariant& wrapped)
{
    auto properties = decodeMap(wrapped);
    if (!properties) return std::nullopt;
    auto change = decodeState(*properties);
    return StateMessage{std::move(*properties), std::move(change)};
}

std::optional<double> decodeVolume(const QVariant& value)
{
    const auto volume = decodeNumber(value);
    if (!volume || !(std::abs(*volume) <= loudest)) return std::nullopt;
    // A whole number beyond 1 is on another scale, on which nothing could be put back.
    const bool isFraction =
        plain(value).typeId() == QMetaType::Double || plain(value).typeId() == QMetaType::Float;
    if (!isFraction && (*volume < 0.0 || *volume > 1.0)) return std::nullopt;
    return std::max(*volume, 0.0);
}

}  // namespace sonvara
