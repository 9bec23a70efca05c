// What players put on the bus: the right keys with values of any type.
#include "Require.h"
#include "platform/linux/players/MprisDecoder.h"
#include "support/Text.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <QStringList>
#include <QVariantMap>

#include <array>
#include <string>

using namespace sonvara;
using fuzz::require;

namespace {

constexpr std::array trackKeys{"xesam:title",      "xesam:artist",  "xesam:album",
                               "xesam:userRating", "mpris:trackid", "xesam:url"};

QString anyString(FuzzedDataProvider& input)
{
    // Any sixteen-bit units, lone surrogates among them.
    const auto bytes = input.ConsumeBytes<char>(input.ConsumeIntegralInRange<std::size_t>(0, 40));
    return QString(reinterpret_cast<const QChar*>(bytes.data()), static_cast<qsizetype>(bytes.size() / 2));
}

QVariant anyValue(FuzzedDataProvider& input)
{
    switch (input.ConsumeIntegralInRange(0, 8)) {
    case 0: return anyString(input);
    case 1: return QStringList{anyString(input), anyString(input)};
    case 2: return input.ConsumeFloatingPoint<double>();
    case 3: return input.ConsumeIntegral<int>();
    case 4: return input.ConsumeBool();
    case 5: return QVariantList{anyString(input), 5, QVariant()};
    case 6: return QVariantMap{{anyString(input), anyString(input)}};
    case 7: return QByteArray::fromStdString(input.ConsumeRandomLengthString(20));
    default: return {};
    }
}

void requireText(const std::string& s)
{
    require(text::isValidUtf8(s));
    require(text::trim(s) == s);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzedDataProvider input(data, size);
    QVariantMap metadata;
    for (const auto* key : trackKeys) {
        if (input.ConsumeBool()) metadata[QString::fromLatin1(key)] = anyValue(input);
    }
    const auto state = decodeState(
        {{QStringLiteral("Metadata"), metadata}, {QStringLiteral("PlaybackStatus"), anyValue(input)}});
    const auto track = decodeTrack(metadata);
    for (const auto* text : {&track.title, &track.artist, &track.album, &track.id, &track.url})
        requireText(*text);
    if (const auto volume = decodeVolume(anyValue(input))) require(*volume >= 0 && *volume <= 100);
    PlayerState player;
    merge(player, state);
    const auto snapshot = snapshotOf(player);
    require(snapshot.hasTrack() || snapshot == PlayerSnapshot{});
    return 0;
}
