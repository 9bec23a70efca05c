#include "platform/linux/style/Mnemonics.h"

#include <gtest/gtest.h>

namespace sonvara::test {

namespace {

TEST(MnemonicsTest, TakesTheFirstLettersOfWordsFirst)
{
    Mnemonics keys;
    EXPECT_EQ(keys.pick("Lower music while speaking"), u'L');
    EXPECT_EQ(keys.pick("Launch at login"), u'a');
    EXPECT_EQ(keys.pick("Always"), u'w');
}

TEST(MnemonicsTest, HandsOutNoKeyTwice)
{
    Mnemonics keys;
    EXPECT_EQ(keys.pick("Aa"), u'A');
    EXPECT_TRUE(keys.pick("a").isNull());
    EXPECT_TRUE(keys.pick("(12)").isNull());
    EXPECT_TRUE(keys.pick("").isNull());
}

TEST(MnemonicsTest, MarksTheKeyWhereverItIs)
{
    EXPECT_EQ(withMnemonic("View log (3)", u'l'), "View &log (3)");
    EXPECT_EQ(withMnemonic("View log", u'v'), "&View log");
    EXPECT_EQ(withMnemonic("R&D lab", u'L'), "R&&D &lab");
    EXPECT_EQ(withMnemonic("R&D", {}), "R&&D");
    EXPECT_EQ(withMnemonic("R&D", u'x'), "R&&D");
}

TEST(MnemonicsTest, ShowsEveryTitleAsItIs)
{
    EXPECT_EQ(withoutMnemonic("A & B && C_d"), "A && B &&&& C_d");
}

}  // namespace

}  // namespace sonvara::test
