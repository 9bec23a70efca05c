// The diagnostics log sheet as a value.
#include "ui/LogView.h"

#include "fakes/FakeDesktop.h"

#include <gmock/gmock.h>

#include <chrono>
#include <string>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

class LogViewTest : public testing::Test {
protected:
    FakeDesktop desktop;
    DJLog* log = &DJLog::shared();
    bool isDismissed = false;
    LogSheet sheet = LogView(desktop.platform, *log, [this] { isDismissed = true; }).sheet();

    const PushButton& copy = sheet.buttons.at(0);
    const PushButton& clear = sheet.buttons.at(1);
    const PushButton& done = sheet.buttons.at(2);

    void add(const std::string& message, DJLog::Level level)
    {
        log->log(message, level);
        desktop.time.run();
    }
};

TEST_F(LogViewTest, HasItsFrameHeaderAndSpacings)
{
    EXPECT_EQ(sheet.width, 520);
    EXPECT_EQ(sheet.height, 420);
    EXPECT_EQ(sheet.title.text, "Diagnostics Log");
    EXPECT_EQ(sheet.title.font, FontRole::headline);
    EXPECT_EQ(sheet.title.color, ColorRole::label);
    EXPECT_EQ(sheet.rowSpacing, 4);
    EXPECT_EQ(sheet.columnSpacing, 8);
    ASSERT_EQ(sheet.buttons.size(), 3U);
    EXPECT_EQ(copy.title(), "Copy");
    EXPECT_EQ(clear.title(), "Clear");
    EXPECT_EQ(done.title(), "Done");
}

TEST_F(LogViewTest, AnEmptyLogDisablesCopyAndClearAndShowsItsText)
{
    EXPECT_FALSE(copy.isEnabled());
    EXPECT_FALSE(clear.isEnabled());
    EXPECT_TRUE(done.isEnabled());
    EXPECT_TRUE(sheet.rows().empty());
    EXPECT_EQ(sheet.emptyText.text, "No activity yet. Play a track with AI intros on.");
    EXPECT_EQ(sheet.emptyText.font, FontRole::body);
    EXPECT_EQ(sheet.emptyText.color, ColorRole::secondaryLabel);
    done.action();
    EXPECT_TRUE(isDismissed);
}

TEST_F(LogViewTest, TheNewestEntryIsTheFirstRow)
{
    for (const auto* message : {"one", "two", "three"}) {
        add(message, DJLog::Level::info);
        desktop.time.advance(1s);
    }
    const auto rows = sheet.rows();
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_EQ(rows[0].message.text, "three");
    EXPECT_EQ(rows[0].time.text, "14:03:29");
    EXPECT_EQ(rows[2].message.text, "one");
    EXPECT_EQ(rows[2].id, log->entries.get()[0]->id);
    EXPECT_TRUE(copy.isEnabled());
    EXPECT_TRUE(clear.isEnabled());
}

TEST_F(LogViewTest, TimesAreOnATwentyFourHourClock)
{
    desktop.time.setWallClockOffset(7h + 1min + 38s);
    add("late", DJLog::Level::info);
    EXPECT_EQ(sheet.rows()[0].time.text, "21:05:05");
}

TEST_F(LogViewTest, EachLevelHasItsSymbolAndColour)
{
    add("info", DJLog::Level::info);
    add("success", DJLog::Level::success);
    add("error", DJLog::Level::error);
    const auto rows = sheet.rows();
    EXPECT_EQ(rows[0].symbol.name, "exclamationmark.triangle.fill");
    EXPECT_EQ(rows[0].symbolColor, ColorRole::systemOrange);
    EXPECT_EQ(rows[1].symbol.name, "checkmark.circle.fill");
    EXPECT_EQ(rows[1].symbolColor, ColorRole::systemGreen);
    EXPECT_EQ(rows[2].symbol.name, "info.circle");
    EXPECT_EQ(rows[2].symbolColor, ColorRole::secondaryLabel);
    for (const auto& row : rows) EXPECT_EQ(row.symbol.accessibilityDescription, "");
}

TEST_F(LogViewTest, RowsHaveTheirFonts)
{
    add("entry", DJLog::Level::info);
    const auto row = sheet.rows()[0];
    EXPECT_EQ(row.time.font, FontRole::captionMonospaced);
    EXPECT_EQ(row.time.color, ColorRole::secondaryLabel);
    EXPECT_EQ(row.symbolFont, FontRole::caption);
    EXPECT_EQ(row.message.font, FontRole::caption);
    EXPECT_EQ(row.message.color, ColorRole::label);
}

TEST_F(LogViewTest, CopyReplacesThePasteboardWithThePlainText)
{
    add("one", DJLog::Level::info);
    add("two", DJLog::Level::error);
    copy.action();
    EXPECT_THAT(desktop.pasteboard.contents, ElementsAre(log->plainText()));
}

TEST_F(LogViewTest, ClearEmptiesTheListOnTheNextTurn)
{
    add("one", DJLog::Level::info);
    clear.action();
    EXPECT_EQ(sheet.rows().size(), 1U);
    desktop.time.run();
    EXPECT_TRUE(sheet.rows().empty());
}

TEST_F(LogViewTest, EntriesThatArriveWhileItIsOpenAreSignalledWhenTheyAreThere)
{
    std::vector<std::size_t> rowsSeen;
    const auto handle = sheet.onChange([&] { rowsSeen.push_back(sheet.rows().size()); });
    add("one", DJLog::Level::info);
    add("two", DJLog::Level::info);
    EXPECT_THAT(rowsSeen, ElementsAre(1U, 2U));
}

}  // namespace
}  // namespace sonvara::test
