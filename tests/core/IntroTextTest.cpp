// The prompt and the clean-up of the answer.
#include "ai/AIDJ.h"

#include <gtest/gtest.h>

#include <string>

namespace sonvara::test {
namespace {

const std::string instructions =
    "You are a smooth radio DJ with deep music knowledge. Introduce the track with a little upbeat DJ chat, "
    "and "
    "work in ONE genuinely interesting, true fact about the artist or song. If you are not sure a fact is "
    "true, "
    "skip it rather than invent one. Respond with ONE or TWO short spoken sentences (max 45 words total). It "
    "will "
    "be read aloud by a text-to-speech voice, so use plain words only \xE2\x80\x94 no emoji, hashtags, "
    "markdown, "
    "quotation marks, or stage directions. Output only the spoken line, nothing before or after.\n\n";

TEST(BuildPromptTest, OfAFavoriteWithAnAlbumHasAllLines)
{
    EXPECT_EQ(AIDJ::buildPrompt("Song A", "Band B", "Album C", true),
              instructions +
                  "Track: Song A\nArtist: Band B\nAlbum: Album C\n"
                  "Note: this is one of the listener's favorite songs.\n\nGive the DJ intro line.");
}

TEST(BuildPromptTest, InstructionsAreOfTheFixedLength)
{
    EXPECT_EQ(instructions.size(), 8U + 237U + 268U + 2U);
}

TEST(BuildPromptTest, WithoutAnAlbumThereIsNoAlbumLine)
{
    EXPECT_EQ(AIDJ::buildPrompt("Song A", "Band B", "", true),
              instructions +
                  "Track: Song A\nArtist: Band B\n"
                  "Note: this is one of the listener's favorite songs.\n\nGive the DJ intro line.");
    EXPECT_EQ(AIDJ::buildPrompt("Song A", "Band B", "", false),
              instructions + "Track: Song A\nArtist: Band B\n\nGive the DJ intro line.");
}

TEST(BuildPromptTest, WhatIsNoFavoriteHasNoNote)
{
    EXPECT_EQ(AIDJ::buildPrompt("Song A", "Band B", "Album C", false),
              instructions + "Track: Song A\nArtist: Band B\nAlbum: Album C\n\nGive the DJ intro line.");
}

TEST(BuildPromptTest, EmptyTitleAndArtistKeepTheirLines)
{
    EXPECT_EQ(AIDJ::buildPrompt("", "", "", false),
              instructions + "Track: \nArtist: \n\nGive the DJ intro line.");
}

TEST(BuildPromptTest, LineFeedsAndQuotationMarksPassThrough)
{
    EXPECT_EQ(AIDJ::buildPrompt("a\n\"b\"", "'c'", "\\d\\", false),
              instructions + "Track: a\n\"b\"\nArtist: 'c'\nAlbum: \\d\\\n\nGive the DJ intro line.");
}

TEST(IntroLineTest, IsTheLastOfSeveralLines)
{
    EXPECT_EQ(AIDJ::introLine("Hello!\n\nYour intro:\nHere comes Song A.\n"), "Here comes Song A.");
}

TEST(IntroLineTest, IsTrimmed)
{
    EXPECT_EQ(AIDJ::introLine("  Here comes Song A.  \n"), "Here comes Song A.");
    EXPECT_EQ(AIDJ::introLine("\u3000Song A\u00a0\r\n"), "Song A");
    EXPECT_EQ(AIDJ::introLine("\u200bSong A\u200b\n"), "Song A");
}

TEST(IntroLineTest, OfNothingButLineFeedsOrBlanksIsEmpty)
{
    EXPECT_EQ(AIDJ::introLine(""), "");
    EXPECT_EQ(AIDJ::introLine("\n\n\n"), "");
    EXPECT_EQ(AIDJ::introLine("   \n \n"), "");
    EXPECT_EQ(AIDJ::introLine("\u200b\n"), "");
}

TEST(IntroLineTest, ALastLineOfBlanksHidesTheOnesBefore)
{
    EXPECT_EQ(AIDJ::introLine("A line.\n   \n"), "");
    EXPECT_EQ(AIDJ::introLine("A line.\n\u2003\u3000\n"), "");
}

TEST(IntroLineTest, SoDoesALastLineOfOnlyACarriageReturn)
{
    EXPECT_EQ(AIDJ::introLine("A line.\r\n\r\n"), "");
    EXPECT_EQ(AIDJ::introLine("A line.\n\r"), "");
}

TEST(IntroLineTest, AMegabyteWithoutALineFeedIsOneLine)
{
    const std::string line(1 << 20, 'x');
    EXPECT_EQ(AIDJ::introLine(line), line);
}

TEST(IntroLineTest, NothingElseIsCleaned)
{
    EXPECT_EQ(AIDJ::introLine("**\"Song\"** \xF0\x9F\x8E\xB5\n"), "**\"Song\"** \xF0\x9F\x8E\xB5");
    EXPECT_EQ(AIDJ::introLine(std::string("a\0b\x1b[31m\n", 9)), std::string("a\0b\x1b[31m", 8));
}

}  // namespace
}  // namespace sonvara::test
