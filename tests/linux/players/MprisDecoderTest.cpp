#include "platform/linux/players/MprisDecoder.h"

#include "support/Text.h"

#include <QDBusObjectPath>
#include <QDBusVariant>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace sonvara::test {
namespace {

const QVariantMap song{{"xesam:title", "Song"},
                       {"xesam:artist", QStringList{"A", "B"}},
                       {"xesam:album", "Album"},
                       {"mpris:trackid", QVariant::fromValue(QDBusObjectPath("/track/1"))},
                       {"xesam:url", "file:///song.mp3"}};

Track decodeWith(const QString& key, const QVariant& value)
{
    auto metadata = song;
    metadata[key] = value;
    return decodeTrack(metadata);
}

// Every kind of value that is none of the expected ones.
const QVariantList strangers{QVariant(),
                             true,
                             7,
                             3.5,
                             QByteArray("x"),
                             QStringList{},
                             QVariantList{},
                             QVariantMap{},
                             QVariant::fromValue(QDBusVariant()),
                             QVariantList{1, 2.0, QVariant()}};

TEST(MprisDecoderTest, ReadsATrack)
{
    const auto track = decodeTrack(song);
    EXPECT_EQ(track.title, "Song");
    EXPECT_EQ(track.artist, "A, B");
    EXPECT_EQ(track.album, "Album");
    EXPECT_EQ(track.id, "/track/1");
    EXPECT_EQ(track.url, "file:///song.mp3");
    EXPECT_FALSE(track.loved);
}

TEST(MprisDecoderTest, ArtistsMayBeOneTextOrAnyList)
{
    EXPECT_EQ(decodeWith("xesam:artist", "Solo").artist, "Solo");
    EXPECT_EQ(decodeWith("xesam:artist", QVariantList{"A", 5, "B"}).artist, "A, B");
    EXPECT_EQ(decodeWith("xesam:artist", QStringList{"", "B", ""}).artist, "B");
    EXPECT_EQ(decodeWith("xesam:artist", QStringList{}).artist, "");
}

TEST(MprisDecoderTest, ATrackIdMayBeAText)
{
    EXPECT_EQ(decodeWith("mpris:trackid", "spotify:track:1").id, "spotify:track:1");
}

TEST(MprisDecoderTest, ValuesOfWrongTypesAreMissing)
{
    for (const auto& stranger : strangers) {
        EXPECT_EQ(decodeWith("xesam:title", stranger).title, "");
        EXPECT_EQ(decodeWith("xesam:artist", stranger).artist, "");
        EXPECT_EQ(decodeWith("xesam:album", stranger).album, "");
        EXPECT_EQ(decodeWith("mpris:trackid", stranger).id, "");
        EXPECT_EQ(decodeWith("xesam:url", stranger).url, "");
        EXPECT_FALSE(decodeWith("xesam:userRating", stranger).loved);
        EXPECT_EQ(decodeState({{"PlaybackStatus", stranger}}).status, std::nullopt);
    }
}

TEST(MprisDecoderTest, ALengthIsAnyNumberAboveZero)
{
    EXPECT_TRUE(decodeWith("mpris:length", 1000000LL).hasLength);
    EXPECT_TRUE(decodeWith("mpris:length", 2.5e6).hasLength);
    EXPECT_FALSE(decodeWith("mpris:length", 0).hasLength);
    EXPECT_FALSE(decodeWith("mpris:length", -1).hasLength);
    EXPECT_FALSE(decodeWith("mpris:length", "long").hasLength);
    EXPECT_FALSE(decodeTrack(song).hasLength);
}

TEST(MprisDecoderTest, AStreamsSongStandsBesideTheStation)
{
    EXPECT_EQ(decodeWith("icy-title", "One - Song").title, "One - Song");
    EXPECT_EQ(decodeWith("icy-title", "").title, "Song");
    EXPECT_EQ(decodeWith("cmus:stream_title", "One - Song").title, "One - Song");
    EXPECT_EQ(decodeWith("vlc:nowplaying", "One - Song").title, "One - Song");
}

TEST(MprisDecoderTest, LovedIsTheHighestRatingOnly)
{
    EXPECT_TRUE(decodeWith("xesam:userRating", 1.0).loved);
    EXPECT_TRUE(decodeWith("xesam:userRating", 1).loved);
    EXPECT_FALSE(decodeWith("xesam:userRating", 0.8).loved);
    EXPECT_FALSE(decodeWith("xesam:userRating", 3.0).loved);
    EXPECT_FALSE(decodeWith("xesam:userRating", "1.0").loved);
    EXPECT_FALSE(decodeWith("xesam:userRating", std::nan("")).loved);
}

TEST(MprisDecoderTest, VariantsInVariantsAreUnwrapped)
{
    const auto wrapped = QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant("Deep"))));
    EXPECT_EQ(decodeWith("xesam:title", wrapped).title, "Deep");
}

TEST(MprisDecoderTest, BlanksAndLineEndsAroundATextAreNoPartOfIt)
{
    EXPECT_EQ(decodeText(QString(" \t\u00a0\u3000A  B\r\n")), "A  B");
    EXPECT_EQ(decodeText(QString(" \n")), "");
    EXPECT_EQ(decodeWith("xesam:artist", QStringList{" A ", " ", "B "}).artist, "A, B");
}

TEST(MprisDecoderTest, TextsAreValidWhateverTheyHold)
{
    const auto nul = QString(QChar(0)) + "a";
    EXPECT_EQ(decodeText(nul), std::string("\0a", 2));
    EXPECT_EQ(decodeText(QString::fromUtf8("Sigur Rós 🎵")), "Sigur Rós 🎵");
    const QString loneSurrogate = QString("a") + QChar(0xD800) + "b";
    EXPECT_TRUE(text::isValidUtf8(decodeText(loneSurrogate)));
    EXPECT_EQ(decodeText(QString(1 << 20, 'x')).size(), std::size_t(1 << 20));
}

TEST(MprisDecoderTest, StateNamesOnlyWhatThePropertiesHold)
{
    const auto volume = decodeState({{"Volume", 0.5}});
    EXPECT_FALSE(volume.status || volume.track);
    EXPECT_EQ(decodeState({{"PlaybackStatus", "Playing"}}).status, PlaybackStatus::playing);
    EXPECT_EQ(decodeState({{"PlaybackStatus", "Paused"}}).status, PlaybackStatus::paused);
    EXPECT_EQ(decodeState({{"PlaybackStatus", "Stopped"}}).status, PlaybackStatus::stopped);
    EXPECT_EQ(decodeState({{"PlaybackStatus", "playing"}}).status, std::nullopt);
    EXPECT_EQ(decodeState({{"Metadata", song}}).track->title, "Song");
    EXPECT_EQ(decodeState({{"Metadata", QVariantMap()}}).track->title, "");
    EXPECT_FALSE(decodeState({{"Metadata", "a text"}}).track);
}

TEST(MprisDecoderTest, AVolumeIsTheVeryNumberThatWasTold)
{
    for (const double volume : {0.0, 1.0, 0.300003, 0.295, 1.25}) EXPECT_EQ(decodeVolume(volume), volume);
    EXPECT_EQ(decodeVolume(-0.5), 0.0);
    EXPECT_EQ(decodeVolume(1), 1.0);
    EXPECT_EQ(decodeVolume(0), 0.0);
    EXPECT_EQ(decodeVolume(1.25F), 1.25);
    EXPECT_EQ(decodeVolume(100.0), 100.0);
    EXPECT_EQ(decodeVolume(QVariant::fromValue(QDBusVariant(0.5))), 0.5);
}

TEST(MprisDecoderTest, WhatIsNoFiniteNumberIsNoVolume)
{
    EXPECT_EQ(decodeVolume(1e300), std::nullopt);
    EXPECT_EQ(decodeVolume(100.05), std::nullopt);
    EXPECT_EQ(decodeVolume(2), std::nullopt) << "on a scale that nobody knows";
    EXPECT_EQ(decodeVolume(std::nan("")), std::nullopt);
    EXPECT_EQ(decodeVolume(std::numeric_limits<double>::infinity()), std::nullopt);
    EXPECT_EQ(decodeVolume(-std::numeric_limits<double>::infinity()), std::nullopt);
    for (const auto& no : QVariantList{QVariant(), "0.5", true, 42, -1, QStringList{"0.5"}, QVariantMap{}})
        EXPECT_EQ(decodeVolume(no), std::nullopt);
}

}  // namespace
}  // namespace sonvara::test
