#include "platform/linux/players/TrackDescription.h"

#include <gtest/gtest.h>

#include <ostream>

namespace sonvara::test {
namespace {

struct Words {
    std::string title;
    std::string artist;
    std::string album;
};

Track file(const Words& words, const std::string& url = "file:///music/Box/take.flac")
{
    Track track{.title = words.title, .artist = words.artist, .album = words.album, .id = {}, .url = url};
    track.hasLength = true;
    return track;
}

Track stream(const Words& words, const std::string& url = "http://127.0.0.1:8000/radio.mp3")
{
    auto track = file(words, url);
    track.hasLength = false;
    return track;
}

Words wordsOf(const Track& track)
{
    const auto told = tidied(track);
    return {told.title, told.artist, told.album};
}

bool operator==(const Words& a, const Words& b)
{
    return a.title == b.title && a.artist == b.artist && a.album == b.album;
}

void PrintTo(const Words& words, std::ostream* out)
{
    *out << words.title << "/" << words.artist << "/" << words.album;
}

TEST(TrackDescriptionTest, ATaggedTrackStaysAsItIs)
{
    const Words tagged{"Song", "Artist", "Album"};
    EXPECT_EQ(wordsOf(file(tagged)), tagged);
    EXPECT_EQ(wordsOf(file(tagged, "")), tagged);
    EXPECT_EQ(wordsOf(file(tagged, "/music/a path.flac")), tagged);
    const Words unusual{"Unknown Pleasures", "The Unknown", "50/50"};
    EXPECT_EQ(wordsOf(file(unusual)), unusual);
}

TEST(TrackDescriptionTest, WordsForSomethingUnknownCountAsEmpty)
{
    for (const auto* const word :
         {"Unknown", "unknown artist", "Unknown Album", "<Unknown>", "[unknown]", "(unknown)"})
        EXPECT_EQ(wordsOf(file({"Song", word, word})), (Words{"Song", "", ""})) << word;
}

TEST(TrackDescriptionTest, AWordForAnUnknownTitleIsNone)
{
    const auto* const url = "file:///music/my_first%20take.flac";
    EXPECT_EQ(wordsOf(file({"Unknown title", "Unknown artist", "Unknown album"}, url)),
              (Words{"my first take", "", ""}));
    EXPECT_EQ(wordsOf(stream({"Unknown title", "", ""})), (Words{"", "", ""}));
    EXPECT_EQ(wordsOf(file({"Unknown title", "", ""}, "")), (Words{"", "", ""}));
    EXPECT_EQ(wordsOf(file({"Unknown", "Artist", "Album"}, url)), (Words{"Unknown", "Artist", "Album"}));
}

TEST(TrackDescriptionTest, AFileNameLosesItsSuffixAndItsUnderscores)
{
    EXPECT_EQ(
        wordsOf(file({"my first take.flac", "Unknown", "Unknown"}, "file:///music/my%20first%20take.flac")),
        (Words{"my first take", "", ""}));
    EXPECT_EQ(wordsOf(file({"holiday_2019.mp4", "", ""}, "file:///video/holiday_2019.mp4")),
              (Words{"holiday 2019", "", ""}));
    EXPECT_EQ(wordsOf(file({"holiday_2019.MP4", "", ""}, "")), (Words{"holiday 2019", "", ""}));
    EXPECT_EQ(wordsOf(file({"holiday_2019", "", ""}, "/video/holiday_2019.mp4")),
              (Words{"holiday 2019", "", ""}));
    // Quod Libet
    EXPECT_EQ(wordsOf(file({"holiday_2019.mp4 [untitled MPEG-4]", "", ""}, "file:///video/holiday_2019.mp4")),
              (Words{"holiday 2019", "", ""}));
    EXPECT_EQ(wordsOf(file({"/video/holiday_2019.mp4", "", ""}, "/video/holiday_2019.mp4")),
              (Words{"holiday 2019", "", ""}));
}

TEST(TrackDescriptionTest, EachSuffixOfAMediaFileIsTakenOff)
{
    for (const auto* const suffix : {"aac", "aif", "aiff", "ape", "avi", "flac", "m4a", "m4v", "mka", "mkv",
                                     "mov", "mp3", "mp4", "oga", "ogg", "opus", "wav", "webm", "wma"})
        EXPECT_EQ(wordsOf(file({std::string("take_1.") + suffix, "", ""}, "")), (Words{"take 1", "", ""}))
            << suffix;
    EXPECT_EQ(wordsOf(file({"take_1.txt", "", ""}, "")), (Words{"take_1.txt", "", ""}));
    EXPECT_EQ(wordsOf(file({".mp3", "", ""}, "")), (Words{".mp3", "", ""})) << "is a name, and no suffix";
}

TEST(TrackDescriptionTest, NoTitleIsMadeWhereNoneIsTold)
{
    EXPECT_EQ(wordsOf(file({"", "", ""})), (Words{"", "", ""}));
}

TEST(TrackDescriptionTest, ATitleThatOnlyResemblesItsFilesNameStays)
{
    const Words tagged{"take.flac live", "Artist", "Album"};
    EXPECT_EQ(wordsOf(file(tagged)), tagged);
    EXPECT_EQ(wordsOf(file({"take two", "", ""}, "file:///music/take")), (Words{"take two", "", ""}));
}

TEST(TrackDescriptionTest, APathIsNoAddressWithEscapes)
{
    EXPECT_EQ(wordsOf(file({"a_b#1", "", ""}, "/music/a_b#1.flac")), (Words{"a b#1", "", ""}));
}

// Sayonara
TEST(TrackDescriptionTest, AFileNameThatKeptTheDotOfItsSuffixLosesItToo)
{
    EXPECT_EQ(wordsOf(file({"holiday_2019.", "Unknown artist", "Unknown album"}, "")),
              (Words{"holiday 2019", "", ""}));
    EXPECT_EQ(wordsOf(file({"HUMBLE.", "", ""}, "")), (Words{"HUMBLE.", "", ""}));
    EXPECT_EQ(wordsOf(file({"A_B.", "Artist", "Album"}, "")), (Words{"A_B.", "Artist", "Album"}));
}

TEST(TrackDescriptionTest, ADotInATitleIsNoSuffix)
{
    const Words dotted{"Mr. Blue", "", ""};
    EXPECT_EQ(wordsOf(file(dotted)), dotted);
    EXPECT_EQ(wordsOf(file({"Take_No.5", "", ""})), (Words{"Take_No.5", "", ""}));
}

TEST(TrackDescriptionTest, AnAddressIsNeverSaid)
{
    EXPECT_EQ(wordsOf(stream({"http://127.0.0.1:8000/radio.mp3", "", ""})), (Words{"", "", ""}));
    EXPECT_EQ(wordsOf(stream({"127.0.0.1:8000/radio.mp3", "", ""})), (Words{"", "", ""}));
    EXPECT_EQ(wordsOf(stream({"radio.mp3", "", ""})), (Words{"", "", ""}));
    // Audacious, until the first song
    EXPECT_EQ(wordsOf(stream({"radio", "", "127.0.0.1"})), (Words{"", "", ""}));
    // Haruna
    EXPECT_EQ(wordsOf(file({"radio.mp3", "", ""}, "file://127.0.0.1:8000/radio.mp3")), (Words{"", "", ""}));
    EXPECT_EQ(wordsOf(file({"take.mp3", "", ""}, "file://localhost/music/take.mp3")),
              (Words{"take", "", ""}));
    // mpv, with the length of what it has fetched so far
    EXPECT_EQ(wordsOf(file({"radio", "", ""}, "http://127.0.0.1:8000/radio.mp3")), (Words{"", "", ""}));
    EXPECT_EQ(wordsOf(file({"radio.mp3", "", ""}, "http://127.0.0.1:8000/radio.mp3")), (Words{"", "", ""}));
    EXPECT_EQ(wordsOf(file({"file:///music/a_b.mp3", "", ""}, "file:///music/a_b.mp3")),
              (Words{"a b", "", ""}));
    for (const auto* const sentence : {"See http://example.org", "See\thttp://example.org"})
        EXPECT_EQ(wordsOf(file({sentence, "", ""}, "")), (Words{sentence, "", ""}));
}

// Sayonara tells neither the address of a station nor a length.
TEST(TrackDescriptionTest, AFileNameWithoutAnAddressAndALengthIsTheEndOfAnAddress)
{
    EXPECT_EQ(wordsOf(stream({"wave-128.mp3", "Unknown artist", "Unknown album"}, "")), (Words{"", "", ""}));
    EXPECT_EQ(wordsOf(stream({"Artist One - Song One", "Unknown artist", "Unknown album"}, "")),
              (Words{"Artist One - Song One", "", ""}));
    EXPECT_EQ(wordsOf(stream({"Song.mp3", "Artist", "Album"}, "")), (Words{"Song.mp3", "Artist", "Album"}));
}

TEST(TrackDescriptionTest, AStreamHasNoAlbumAndAStationIsNoArtist)
{
    const Words song{"Artist One - Song One", "", ""};
    EXPECT_EQ(wordsOf(stream({"Artist One - Song One", "Radio Nine", "Radio Nine"})), song);
    EXPECT_EQ(wordsOf(stream({"Artist One - Song One", "127.0.0.1", "Unknown album"})), song);
    EXPECT_EQ(wordsOf(stream({"Artist One - Song One", "", "Radio Nine"})), song);
    EXPECT_EQ(wordsOf(stream({"Song", "127.0.0.1", ""})), (Words{"Song", "", ""}));
    EXPECT_EQ(wordsOf(stream({"Song", "Radio Nine", "Radio Nine"})), (Words{"Song", "", ""}));
    EXPECT_EQ(wordsOf(stream({"Artist One - Song One", "Radio Nine", "The best of today"})), song);
    EXPECT_EQ(wordsOf(stream({"Song", "Artist", "Radio Nine"})), (Words{"Song", "Artist", ""}));
}

TEST(TrackDescriptionTest, ATrackOfACatalogueKeepsItsAlbum)
{
    const Words song{"Song - Live", "Artist", "Album"};
    EXPECT_EQ(wordsOf(file(song, "https://open.spotify.com/track/42")), song);
    EXPECT_EQ(wordsOf(file(song, "https://music.example/Song - Live")), song);
}

TEST(TrackDescriptionTest, AFileWhoseLengthIsNotKnownYetIsNoStream)
{
    const Words song{"Song - Live", "Artist", "Album"};
    EXPECT_EQ(wordsOf(stream(song, "file:///music/song.flac")), song);
    EXPECT_EQ(wordsOf(stream(song, "")), song);
}

TEST(TrackDescriptionTest, TheFolderOfAFileWithoutTagsIsNoAlbum)
{
    EXPECT_EQ(wordsOf(file({"Song", "", "Box"})), (Words{"Song", "", ""}));
    EXPECT_EQ(wordsOf(file({"take.flac", "Unknown Artist", "Box"})), (Words{"take", "", ""}));
    EXPECT_EQ(wordsOf(file({"take.flac", "Artist", "Box"})), (Words{"take", "Artist", ""}));
    EXPECT_EQ(wordsOf(file({"Song", "Artist", "Box"})), (Words{"Song", "Artist", "Box"}));
}

// Audacious makes both of the folders of a file without tags, which then looks like one of a library in good order.
TEST(TrackDescriptionTest, FoldersThatAreCalledLikeArtistAndAlbumTakeNeitherAway)
{
    const Words song{"Song", "Artist", "Album"};
    EXPECT_EQ(wordsOf(file(song, "file:///music/Artist/Album/Song.flac")), song);
}

}  // namespace
}  // namespace sonvara::test
