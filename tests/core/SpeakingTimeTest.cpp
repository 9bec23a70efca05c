// How long a line may take to be spoken.
#include "support/SpeakingTime.h"

#include <gtest/gtest.h>

namespace sonvara::test {
namespace {

using std::chrono::milliseconds;

TEST(SpeakingTimeTest, AddsUpWhatEachCharacterMayTake)
{
    const SpeakingTime time{milliseconds(1000), milliseconds(10), milliseconds(100)};
    EXPECT_EQ(longestTime("", time), milliseconds(1000));
    EXPECT_EQ(longestTime("abc d", time), milliseconds(1050));
    EXPECT_EQ(longestTime("/:", time), milliseconds(1020)) << "the signs beside the figures";
    EXPECT_EQ(longestTime("0", time), milliseconds(1100));
    EXPECT_EQ(longestTime("9", time), milliseconds(1100));
    EXPECT_EQ(longestTime("a99\u00e9\U0001F600", time), milliseconds(1410));
    EXPECT_EQ(longestTime("\x7f\xc2\x80", time), milliseconds(1110));
}

TEST(SpeakingTimeTest, IsGenerousUnlessToldOtherwise)
{
    EXPECT_EQ(longestTime("", {}), milliseconds(5000));
    EXPECT_EQ(longestTime("a", {}), milliseconds(5150));
    EXPECT_EQ(longestTime("1", {}), milliseconds(5600));
}

}  // namespace
}  // namespace sonvara::test
