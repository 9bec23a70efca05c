// The sheet over a form: a list of rows that comes and goes with its binding, whichever renderer draws it.
#include "WindowFixture.h"

namespace sonvara::test {

namespace {

using LogSheetTest = WindowFixture;

TEST_F(LogSheetTest, ComesWithAButtonOfTheForm)
{
    show();
    EXPECT_FALSE(probe::isShown(sheetPlace));
    probe::press(title, "View log (0)");
    EXPECT_TRUE(probe::isShown(sheetPlace));
    EXPECT_EQ(probe::contentSize(sheetPlace), (probe::Size{520, 420}));
}

TEST_F(LogSheetTest, ComesAndGoesWithItsBinding)
{
    showSheet();
    sample_.showSheet(false);
    EXPECT_FALSE(probe::isShown(sheetPlace));
    showSheet();
}

TEST_F(LogSheetTest, GoesWithEscape)
{
    showSheet();
    probe::pressEscape(sheetPlace);
    EXPECT_FALSE(sample_.isSheetShown);
    EXPECT_FALSE(probe::isShown(sheetPlace));
    EXPECT_TRUE(probe::isShown(title));
}

TEST_F(LogSheetTest, GoesWithItsWindow)
{
    showSheet();
    owner_->window = nullptr;
    EXPECT_TRUE(probe::runUntil([] { return !probe::isAnySheetShown(); }));
    EXPECT_TRUE(formGoes());
}

TEST_F(LogSheetTest, ShowsTheEmptyTextAndADisabledButton)
{
    showSheet();
    EXPECT_EQ(probe::texts(sheetPlace), (Texts{"Log", "Nothing yet."}));
    EXPECT_EQ(probe::button(sheetPlace, "Copy"), (ButtonState{false, false}));
    EXPECT_EQ(probe::button(sheetPlace, "Done"), (ButtonState{true, false}));
}

TEST_F(LogSheetTest, ShowsRowsAndFollowsThem)
{
    const std::string message =
        "A message that is so long that it does not fit beside the time and the symbol of "
        "its row, so that it goes on in a second line and maybe in a third one.";
    addRow(message);
    showSheet();
    EXPECT_EQ(probe::texts(sheetPlace), (Texts{"Log", "21:05:09", message}));
    EXPECT_TRUE(probe::isWhole(sheetPlace, message));
    EXPECT_TRUE(probe::isWhole(sheetPlace, "21:05:09"));
    EXPECT_TRUE(probe::isSelectable(sheetPlace, message));
    EXPECT_EQ(probe::button(sheetPlace, "Copy"), (ButtonState{true, false}));
    addRow("Newer");
    EXPECT_LT(probe::placeInSight(sheetPlace, "Newer"), probe::placeInSight(sheetPlace, message));
    sample_.rows.clear();
    sample_.logChanged.call();
    EXPECT_EQ(probe::texts(sheetPlace), (Texts{"Log", "Nothing yet."}));
}

TEST_F(LogSheetTest, ButtonsRunTheirActions)
{
    addRow("one");
    showSheet();
    probe::press(sheetPlace, "Copy");
    EXPECT_EQ(sample_.copies, 1);
    probe::press(sheetPlace, "Done");
    EXPECT_FALSE(probe::isShown(sheetPlace));
}

TEST_F(LogSheetTest, AReaderWhoHasScrolledKeepsTheirPlaceWhenARowComes)
{
    addRows(50);
    showSheet();
    probe::scrollToEnd(sheetPlace);
    const double place = probe::placeInSight(sheetPlace, "message 0");
    addRow("Newer");
    EXPECT_NEAR(probe::placeInSight(sheetPlace, "message 0"), place, 0.5);
}

TEST_F(LogSheetTest, AReaderAtTheTopSeesTheNewRow)
{
    addRows(50);
    showSheet();
    const double place = probe::placeInSight(sheetPlace, "message 49");
    addRow("Newer");
    EXPECT_NEAR(probe::placeInSight(sheetPlace, "Newer"), place, 0.5);
}

}  // namespace

}  // namespace sonvara::test
