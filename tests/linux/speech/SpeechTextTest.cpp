// The pure parts: the text of a line, the language tag.
#include "platform/linux/speech/LanguageTag.h"
#include "platform/linux/speech/LineText.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <random>

namespace sonvara::test {

TEST(LineTextTest, leavesTextAlone)
{
    for (const char* text : {"Now playing", "Ça va? \xe2\x80\x93 \xf0\x9f\x98\x80", "<b> & \"x\"", "  two  "})
        EXPECT_EQ(spokenText(text), text);
}

TEST(LineTextTest, makesBlanksOfWhatIsNoText)
{
    EXPECT_EQ(spokenText("a\tb\x7f\x1b"
                         "c"),
              "a b  c");
    EXPECT_EQ(spokenText("a\xc2\x85"
                         "b"),
              "a b")
        << "a control character beyond ASCII";
    EXPECT_EQ(spokenText("a\xc2"), "a ") << "a character cut short";
    EXPECT_EQ(spokenText("a\xed\xa0\x80"
                         "b"),
              "a   b")
        << "a surrogate";
    EXPECT_EQ(spokenText("\xf5\x80 \r\n"), "");
}

TEST(LineTextTest, knowsWhereControlCharactersBeginAndEnd)
{
    EXPECT_EQ(spokenText("a\x1f\x7f\xc2\x80\xc2\x9f|"), "a    |");
    for (const char* text : {"!~", "\xc2\xa0|", "\xc3\x80"}) EXPECT_EQ(spokenText(text), text);
}

TEST(LineTextTest, cutsBetweenCharacters)
{
    std::string line;
    for (std::size_t i = 0; i < longestLine + 5; ++i) line += "\xc3\xa9";
    EXPECT_EQ(spokenText(line), line.substr(0, longestLine * 2));
}

TEST(LineTextTest, anyBytesBecomeOneLineOfText)
{
    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        std::string line(random() % 40, '\0');
        for (char& c : line) c = static_cast<char>(random());
        const std::string spoken = spokenText(line);
        EXPECT_TRUE(text::isValidUtf8(spoken));
        EXPECT_EQ(spoken.find_first_of(std::string_view("\r\n\0", 3)), std::string::npos);
        EXPECT_EQ(spokenText(spoken), spoken);
    }
}

TEST(LanguageTagTest, comesFromTheFirstVariableThatIsSet)
{
    EXPECT_EQ(languageTag({{"LANG", "de_DE.UTF-8"}}), "de-DE");
    EXPECT_EQ(languageTag({{"LANG", "de_DE.UTF-8"}, {"LC_MESSAGES", "fr_CA"}}), "fr-CA");
    EXPECT_EQ(languageTag({{"LC_ALL", "sv"}, {"LC_MESSAGES", "fr_CA"}}), "sv");
    EXPECT_EQ(languageTag({{"LC_ALL", ""}, {"LANG", "pt_BR@euro"}}), "pt-BR");
}

TEST(LanguageTagTest, isAmericanEnglishWithoutALanguage)
{
    for (const char* locale : {"C", "POSIX", "C.UTF-8", "", "_", "de_DE\r\nX", "/usr/share/locale"})
        EXPECT_EQ(languageTag({{"LANG", locale}}), "en-US") << locale;
    EXPECT_EQ(languageTag({}), "en-US");
}

TEST(LanguageTagTest, isTold)
{
    for (const char* tag : {"zh-Hant-TW", "az-AZ-09"}) EXPECT_TRUE(isLanguageTag(tag)) << tag;
    for (const char* tag :
         {"", "-", "de-", "-de", "de--DE", "de DE", "d\xc3\xa9", "`", "{", "@", "[", "/", ":"})
        EXPECT_FALSE(isLanguageTag(tag)) << tag;
}

}  // namespace sonvara::test
