#include "platform/linux/system/LogText.h"

#include <gtest/gtest.h>

namespace sonvara::test {

namespace {

TEST(LogTextTest, LeavesOrdinaryTextAlone)
{
    const std::string text = "Bj\xC3\xB6rk \"It's Oh So Quiet\" \\ \xE6\xBC\xA2\xE5\xAD\x97 "
                             "\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x8E\xA4";
    EXPECT_EQ(escapedForLog(text), text);
    EXPECT_EQ(escapedForLog(""), "");
}

TEST(LogTextTest, EscapesWhatForgesLinesOrCommandsTerminals)
{
    EXPECT_EQ(escapedForLog("a\nsonvara: Speech: b\r\tc"), "a\\nsonvara: Speech: b\\r\\tc");
    EXPECT_EQ(escapedForLog("\x1B]0;title\x07"), "\\x1b]0;title\\x07");
    EXPECT_EQ(escapedForLog(std::string_view("\0\x7F", 2)), "\\x00\\x7f");
    EXPECT_EQ(escapedForLog("\xC2\x9B"
                            "31m"),
              "\\u009b31m");
    EXPECT_EQ(escapedForLog("\xE2\x80\xA8\xE2\x80\xA9"), "\\u2028\\u2029");
    EXPECT_EQ(escapedForLog("\xE2\x80\xAE"
                            "abc"),
              "\\u202e"
              "abc");
}

TEST(LogTextTest, OfWhatHasNoWidthOnlyJoinersStay)
{
    EXPECT_EQ(escapedForLog("a\xE2\x80\x8C|\xE2\x80\x8D|"), "a\xE2\x80\x8C|\xE2\x80\x8D|");
    EXPECT_EQ(escapedForLog("a\xE2\x80\x8B|\xE2\x80\x8E|"), "a\\u200b|\\u200e|");
    EXPECT_EQ(escapedForLog("\xC2\x80|"), "\\u0080|");
}

TEST(LogTextTest, ReplacesWhatIsNotUtf8)
{
    EXPECT_EQ(escapedForLog("a\xFFz"), "a\xEF\xBF\xBDz");
}

TEST(LogTextTest, HidesPrivatePieces)
{
    const LogMessage message{LogLevel::debug, "Speech", {{"speaking "}, Logger::hidden("a\nsong"), {" now"}}};
    EXPECT_EQ(logText(message, false), "speaking <private> now");
    EXPECT_EQ(logText(message, true), "speaking a\\nsong now");
}

}  // namespace

}  // namespace sonvara::test
