// The text in which lowered players are written down.
#include "volume/VolumeNotes.h"

#include <gtest/gtest.h>

#include <string>

namespace sonvara::test {
namespace {

TEST(VolumeNotesTest, WhatIsFormattedIsParsed)
{
    for (const auto& notes : {VolumeNotes{}, VolumeNotes{{"Music", 100, 35}},
                              VolumeNotes{{"org.mpris.MediaPlayer2.a b", 0, 12}, {"x", 37, 12}}}) {
        EXPECT_EQ(parseVolumeNotes(format(notes)), notes);
    }
}

TEST(VolumeNotesTest, EveryCutOffTextIsRefused)
{
    const auto text = format({{"Music", 100, 35}, {"Spotify", 60, 21}});
    for (std::size_t size = 0; size < text.size(); ++size) {
        const auto notes = parseVolumeNotes(text.substr(0, size));
        // Cut off between two notes it cannot be told from a shorter list.
        if (notes) {
            EXPECT_EQ(text[size - 1], '\n');
        }
    }
    EXPECT_FALSE(parseVolumeNotes(text.substr(0, text.size() - 1)));
}

TEST(VolumeNotesTest, AnythingElseIsRefused)
{
    const auto heading = format({});
    for (const auto* line : {"\n", "100 35\n", "100 35 \n", "101 35 Music\n", "100 -1 Music\n", "a b Music\n",
                             "100  35 Music\n", " 100 35 Music\n", "99999999999 35 Music\n"}) {
        EXPECT_FALSE(parseVolumeNotes(heading + line)) << line;
    }
    EXPECT_FALSE(parseVolumeNotes(""));
    EXPECT_FALSE(parseVolumeNotes("100 35 Music\n"));
    EXPECT_FALSE(parseVolumeNotes(std::string(1000, '\0')));
}

TEST(VolumeNotesTest, TooManyNotesAreRefused)
{
    EXPECT_FALSE(parseVolumeNotes(format(VolumeNotes(101, {"Music", 100, 35}))));
}

}  // namespace
}  // namespace sonvara::test
