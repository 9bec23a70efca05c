// What the shared tests of windows leave to each platform.
#include "Probe.h"
#include "windows/WindowFixture.h"

namespace sonvara::test {

namespace {

using FormWindowTest = WindowFixture;

TEST_F(FormWindowTest, IsTitledClosableAndMiniaturizable)
{
    show();
    EXPECT_EQ(probe::styleMask(title), 7UL);
}

TEST_F(FormWindowTest, TellsThatItComesBackFromTheDock)
{
    show();
    probe::miniaturize(title);
    ASSERT_TRUE(probe::runUntil([this] { return !owner_->window->isVisible(); }));
    show();
    EXPECT_EQ(sample_.appearances, 2);
}

TEST_F(FormWindowTest, MakesRowsWhenTheyScrollIntoSight)
{
    addRows(200);
    showSheet();
    EXPECT_TRUE(probe::hasText(sheetPlace, "message 199"));
    EXPECT_FALSE(probe::hasText(sheetPlace, "message 0"));
    probe::scrollToEnd(sheetPlace);
    EXPECT_TRUE(probe::hasText(sheetPlace, "message 0"));
    EXPECT_FALSE(probe::hasText(sheetPlace, "message 100"));
}

}  // namespace

}  // namespace sonvara::test
