// The rules for Unicode text.
#include "support/Text.h"

#include <gmock/gmock.h>

#include <string>
#include <utility>

namespace sonvara::test {
namespace {

using testing::ElementsAre;

TEST(TextEqualTest, PrecomposedAndDecomposedLettersAreEqual)
{
    EXPECT_TRUE(text::equal("Caf\u00e9", "Cafe\u0301"));
    EXPECT_TRUE(text::equal("\uAC00", "\u1100\u1161"));  // a Hangul syllable and its letters
}

TEST(TextEqualTest, OrderOfCombiningMarksOfDifferentClassesDoesNotCount)
{
    EXPECT_TRUE(text::equal("q\u0307\u0323", "q\u0323\u0307"));
}

TEST(TextEqualTest, MoreMarksThanAnyWritingHasAreComparedByteByByte)
{
    const auto marks = [](int above, int below, const std::string& letter = "a") {
        std::string aboveFirst = letter;
        std::string belowFirst = letter;
        for (int i = 0; i < above; ++i) aboveFirst += "\u0301";
        for (int i = 0; i < below; ++i) aboveFirst += "\u0316";
        for (int i = 0; i < below; ++i) belowFirst += "\u0316";
        for (int i = 0; i < above; ++i) belowFirst += "\u0301";
        return std::pair(aboveFirst, belowFirst);
    };
    const auto areEqual = [](const auto& texts) { return text::equal(texts.first, texts.second); };
    EXPECT_TRUE(areEqual(marks(50, 50)));
    EXPECT_FALSE(areEqual(marks(51, 50)));
    EXPECT_FALSE(areEqual(marks(50, 50, "\u0338"))) << "which is a mark, too";
    EXPECT_TRUE(areEqual(marks(50, 49, "\u0338")));
    EXPECT_FALSE(areEqual(marks(250'000, 250'000))) << "brought into order, these would take minutes";
}

TEST(TextEqualTest, EveryLetterOfALongTextMayHaveItsMarks)
{
    std::string precomposed;
    std::string decomposed;
    for (int i = 0; i < 200; ++i) {
        precomposed += "\u00e9";
        decomposed += "e\u0301";
    }
    EXPECT_TRUE(text::equal(precomposed, decomposed));
}

TEST(TextEqualTest, CaseBlanksAccentsAndCompatibilityFormsCount)
{
    EXPECT_FALSE(text::equal("Song", "song"));
    EXPECT_FALSE(text::equal("Song", "Song "));
    EXPECT_FALSE(text::equal("e", "\u00e9"));
    EXPECT_FALSE(text::equal("\uFB01", "fi"));
}

TEST(TextEqualTest, InvalidUtf8IsComparedByteByByte)
{
    EXPECT_TRUE(text::equal("\xff\xfe", "\xff\xfe"));
    EXPECT_FALSE(text::equal("\xff", "\xfe"));
    EXPECT_FALSE(text::equal("\xff", "e"));
}

TEST(TextEqualTest, NulIsACharacterLikeAnyOther)
{
    EXPECT_FALSE(text::equal(std::string("a\0b", 3), std::string("a\0c", 3)));
    EXPECT_FALSE(text::equal(std::string("a\0b", 3), "a"));
}

TEST(TextTrimTest, RemovesUnicodeWhiteSpaceAndLineEndsFromBothEnds)
{
    EXPECT_EQ(text::trim(" \t\r\n\v\f\u0085\u00a0\u1680\u2003\u2028\u2029\u202f\u205f\u3000Song A\u3000\n "),
              "Song A");
}

TEST(TextTrimTest, RemovesTheSpaceThatHasNoWidth)
{
    EXPECT_EQ(text::trim("\u200b A\u200bB \u200b"), "A\u200bB");
    EXPECT_EQ(text::trim("\u200b"), "");
}

TEST(TextTrimTest, KeepsWhatIsNoWhiteSpace)
{
    for (const std::string other : {"\x08", "\x0e", "\u0084", "\u0086", "\u200c", "\u200d", "\u200e",
                                    "\u180e", "\u2060", "\ufeff", "\u001f"})
        EXPECT_EQ(text::trim(other), other);
    EXPECT_EQ(text::trim("  a b  "), "a b");
    EXPECT_EQ(text::trim(""), "");
    EXPECT_EQ(text::trim(" \u3000 "), "");
    EXPECT_EQ(text::trim(" \xff "), "\xff");
    EXPECT_EQ(text::trim("\x80\x80\x80"), "\x80\x80\x80");
    EXPECT_EQ(text::trim("A \x80"), "A \x80") << "the end of no character; the blank is not at the end";
}

TEST(TextSplitTest, KeepsEmptyPiecesAndFindsSeparatorsFromLeftToRight)
{
    EXPECT_THAT(text::split("a||b||", "||"), ElementsAre("a", "b", ""));
    EXPECT_THAT(text::split("", "||"), ElementsAre(""));
    EXPECT_THAT(text::split("a|||b", "||"), ElementsAre("a", "|b"));
}

TEST(TextLengthTest, CountsUserPerceivedCharacters)
{
    EXPECT_EQ(text::length(""), 0U);
    EXPECT_EQ(text::length("abc"), 3U);
    EXPECT_EQ(text::length("e\u0301"), 1U);
    EXPECT_EQ(text::length("\U0001F468\u200D\U0001F469\u200D\U0001F467"), 1U);  // one family
    EXPECT_EQ(text::length("\U0001F1E9\U0001F1EA\U0001F1EB\U0001F1F7"), 2U);    // two flags
    EXPECT_EQ(text::length("\r\n"), 1U);
    EXPECT_EQ(text::length("\xff\xfe"), 2U);
    EXPECT_EQ(text::length("\xff\u0301"), 2U) << "a mark does not join what is no character";
    EXPECT_EQ(text::length("\u0600\xff"), 2U) << "nor does that join a sign that takes in the next one";
    EXPECT_EQ(text::length("\U0001F1E9\U0001F1EA\xff\U0001F1EB\U0001F1F7"), 3U);
    EXPECT_EQ(text::length(std::string("ab\0\u0301", 5)), 4U) << "a mark does not join a NUL";
    EXPECT_EQ(text::length(std::string("a\0e\u0301", 5)), 3U) << "but the letter after it";
}

TEST(TextCutTest, LeavesWhatIsNotTooWide)
{
    for (const auto* text :
         {"", "x", "12345678", "漢字漢字", "e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301"})
        EXPECT_EQ(text::cutInTheMiddle(text, 8), text);
}

TEST(TextCutTest, KeepsBothEnds)
{
    EXPECT_EQ(text::cutInTheMiddle("123456789", 8), "1234…789");
    EXPECT_EQ(text::cutInTheMiddle("1234567890", 7), "123…890");
    EXPECT_EQ(text::cutInTheMiddle("12", 1), "…");
}

TEST(TextCutTest, AWideCharacterTakesTwoColumns)
{
    EXPECT_EQ(text::cutInTheMiddle("漢字漢字漢", 8), "漢字…漢");
    EXPECT_EQ(text::cutInTheMiddle("🎵🎶🎵🎶🎵", 9), "🎵🎶…🎶🎵");
    EXPECT_EQ(text::cutInTheMiddle("漢漢", 3), "…漢");
    EXPECT_EQ(text::cutInTheMiddle("abcde漢f", 6), "abc…f") << "the wide one has no room";
}

TEST(TextCutTest, CutsNoCharacterInTwo)
{
    EXPECT_EQ(text::cutInTheMiddle("e\u0301e\u0301e\u0301e\u0301", 3), "e\u0301…e\u0301");
    EXPECT_EQ(text::cutInTheMiddle("👨‍👩‍👧👨‍👩‍👧👨‍👩‍👧", 5),
              "👨‍👩‍👧…👨‍👩‍👧");
    EXPECT_EQ(text::cutInTheMiddle("\xFFx\xFFx", 3), "\xFF…x");
}

TEST(TextWrapTest, LeavesWhatIsNotTooWide)
{
    for (const auto* text : {"", " ", "x", "12 45678", "漢字漢字"}) EXPECT_EQ(text::wrap(text, 8), text);
}

TEST(TextWrapTest, BreaksAtTheLastBlankThatHasRoom)
{
    EXPECT_EQ(text::wrap("a b c d e", 3), "a b\nc d\ne") << "the blank itself needs no room";
    EXPECT_EQ(text::wrap("a b cd", 5), "a b\ncd");
    EXPECT_EQ(text::wrap("abc ", 3), "abc\n");
    EXPECT_EQ(text::wrap("漢 字", 4), "漢\n字");
    EXPECT_EQ(text::wrap("ab \u0301cd", 4), "ab \u0301c\nd") << "a blank with a mark is seen";
}

TEST(TextWrapTest, BreaksALongWordBetweenItsCharacters)
{
    EXPECT_EQ(text::wrap("abcdefgh", 3), "abc\ndef\ngh");
    EXPECT_EQ(text::wrap("a bcdefg", 3), "a\nbcd\nefg");
    EXPECT_EQ(text::wrap(" abcd", 3), " ab\ncd") << "no line is empty";
    EXPECT_EQ(text::wrap("漢字漢字漢", 5), "漢字\n漢字\n漢");
    EXPECT_EQ(text::wrap("e\u0301e\u0301e\u0301", 2), "e\u0301e\u0301\ne\u0301");
}

TEST(TextIsValidUtf8Test, RefusesWhatIsNoText)
{
    EXPECT_TRUE(text::isValidUtf8(""));
    EXPECT_TRUE(text::isValidUtf8(std::string("a\0\u00e9\U0001F600", 8)));
    EXPECT_FALSE(text::isValidUtf8("\xc3"));              // cut off
    EXPECT_FALSE(text::isValidUtf8("\xc0\xaf"));          // overlong
    EXPECT_FALSE(text::isValidUtf8("\xed\xa0\x80"));      // a lone surrogate
    EXPECT_FALSE(text::isValidUtf8("\xf4\x90\x80\x80"));  // above the last code point
}

TEST(TextCharacterTest, TheFirstCharacterIsOneByteWhereNoneBegins)
{
    EXPECT_EQ(text::firstCharacter("ab"), "a");
    EXPECT_EQ(text::firstCharacter("éb"), "é");
    EXPECT_EQ(text::firstCharacter("🎵b"), "🎵");
    EXPECT_EQ(text::firstCharacter("\xF0\x9F\x8E"), "\xF0");
    EXPECT_EQ(text::firstCharacter("\x80\x80"), "\x80");
}

TEST(TextCharacterTest, APrefixEndsWithAWholeCharacter)
{
    EXPECT_EQ(text::prefix("añb", 4), "añb");
    EXPECT_EQ(text::prefix("añb", 3), "añ");
    EXPECT_EQ(text::prefix("añb", 2), "a");
    EXPECT_EQ(text::prefix("🎵", 3), "");
    EXPECT_EQ(text::prefix("añb", 0), "");
    EXPECT_EQ(text::prefix(std::string_view("ñ").substr(0, 1), 1), "\xC3") << "what fits stays as it is";
    EXPECT_EQ(text::prefix("\x80\x80\x80", 2), "");
    EXPECT_EQ(text::prefix(std::string(10, '\x80'), 5).size(), 2U) << "no character has more than four bytes";
}

}  // namespace
}  // namespace sonvara::test
