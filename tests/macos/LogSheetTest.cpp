// The sheet over a form: a list of rows that comes and goes with its binding.
#include "FormFixture.h"

namespace sonvara::test {
namespace {

using LogSheetTest = FormFixture;

TEST_F(LogSheetTest, DroppingTheWindowTakesItsSheetAlong)
{
    showSheet();
    closed_->window = nullptr;
    EXPECT_EQ(probe::countWindows(""), 0);
    EXPECT_TRUE(content_.expired());
}

TEST_F(LogSheetTest, SheetComesAndGoesWithItsBinding)
{
    showSheet();
    EXPECT_EQ(probe::contentSize(sheetPlace), (probe::Size{520, 420}));
    model_.isSheetShown = false;
    model_.changed.call();
    EXPECT_FALSE(probe::isShown(sheetPlace));
    showSheet();
}

TEST_F(LogSheetTest, EscapeDismissesTheSheet)
{
    showSheet();
    probe::pressEscape(sheetPlace);
    EXPECT_FALSE(model_.isSheetShown);
    EXPECT_FALSE(probe::isShown(sheetPlace));
}

TEST_F(LogSheetTest, EmptySheetShowsItsTextAndDisabledButtons)
{
    showSheet();
    EXPECT_EQ(probe::texts(sheetPlace), (Texts{"The log", "Nothing yet."}));
    EXPECT_EQ(probe::button(sheetPlace, "First"), (ButtonState{false, false}));
}

TEST_F(LogSheetTest, SheetShowsRowsAndFollowsThem)
{
    const std::string message =
        "A message that is so long that it does not fit beside the time and the symbol of "
        "its row, so that it goes on in a second line and maybe in a third one.";
    model_.rows = {row(1, message)};
    showSheet();
    EXPECT_EQ(probe::texts(sheetPlace), (Texts{"The log", "09:05:07", message}));
    EXPECT_TRUE(probe::isWhole(sheetPlace, message));
    EXPECT_TRUE(probe::isWhole(sheetPlace, "09:05:07"));
    EXPECT_TRUE(probe::isSelectable(sheetPlace, message));
    EXPECT_EQ(probe::button(sheetPlace, "Last"), (ButtonState{true, false}));
    model_.rows.insert(model_.rows.begin(), row(2, "Newer"));
    model_.changed.call();
    EXPECT_TRUE(probe::hasText(sheetPlace, "Newer"));
    model_.rows.clear();
    model_.changed.call();
    EXPECT_EQ(probe::texts(sheetPlace), (Texts{"The log", "Nothing yet."}));
}

TEST_F(LogSheetTest, HeaderButtonsRunTheirActions)
{
    model_.rows = {row(1, "one")};
    showSheet();
    probe::press(sheetPlace, "First");
    probe::press(sheetPlace, "Last");
    EXPECT_EQ(model_.pressed, (Texts{"First", "Last"}));
}

TEST_F(LogSheetTest, RowsAreMadeWhenTheyScrollIntoSight)
{
    for (int i = 0; i < 200; ++i) model_.rows.push_back(row(i, "message " + std::to_string(i)));
    showSheet();
    EXPECT_TRUE(probe::hasText(sheetPlace, "message 0"));
    EXPECT_FALSE(probe::hasText(sheetPlace, "message 199"));
    probe::scrollToEnd(sheetPlace);
    EXPECT_TRUE(probe::hasText(sheetPlace, "message 199"));
    EXPECT_FALSE(probe::hasText(sheetPlace, "message 100"));
}

TEST_F(LogSheetTest, AReaderWhoHasScrolledKeepsTheirPlaceWhenARowComes)
{
    for (int i = 0; i < 50; ++i) model_.rows.push_back(row(i, "message " + std::to_string(i)));
    showSheet();
    probe::scrollToEnd(sheetPlace);
    const double place = probe::placeInSight(sheetPlace, "message 49");
    model_.rows.insert(model_.rows.begin(), row(50, "Newer"));
    model_.changed.call();
    EXPECT_NEAR(probe::placeInSight(sheetPlace, "message 49"), place, 0.5);
}

TEST_F(LogSheetTest, AReaderAtTheTopSeesTheNewRow)
{
    for (int i = 0; i < 50; ++i) model_.rows.push_back(row(i, "message " + std::to_string(i)));
    showSheet();
    const double place = probe::placeInSight(sheetPlace, "message 0");
    model_.rows.insert(model_.rows.begin(), row(50, "Newer"));
    model_.changed.call();
    EXPECT_NEAR(probe::placeInSight(sheetPlace, "Newer"), place, 0.5);
}

}  // namespace
}  // namespace sonvara::test
