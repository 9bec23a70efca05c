// The status item and its menu, with the mouse on them.
#include "platform/macos/windows/CocoaStatusBar.h"
#include "Mouse.h"
#include "Probe.h"
#include "StandInTest.h"
#include "StripProbe.h"
#include "platform/macos/windows/CocoaImage.h"

#include <chrono>
#include <future>

namespace sonvara::test {
namespace {

using probe::ShownItem;

class CocoaStatusBarTest : public StandInTest {
protected:
    CocoaStatusBarTest() { item_->setMenu(*menu_); }

    MenuItem action(const std::string& title)
    {
        MenuItem item;
        item.title = title;
        item.isEnabled = true;
        item.action = [this, title] { chosen_.push_back(title); };
        return item;
    }

    CocoaStatusBar bar_;
    std::unique_ptr<StatusMenu> menu_ = bar_.makeMenu();
    std::unique_ptr<StatusItem> item_ = bar_.makeSquareItem();
    std::vector<std::string> chosen_;
};

TEST_F(CocoaStatusBarTest, ShowsSymbolsAndImages)
{
    StatusButton* button = item_->button();
    ASSERT_NE(button, nullptr);
    button->setSymbol({"music.note", "Sonvara"});
    EXPECT_EQ(probe::statusImage(), (probe::StatusImage{"music.note", "Sonvara", 14, 14, false}));
    button->setSymbol({"music.note", ""});
    EXPECT_EQ(probe::statusImage(), (probe::StatusImage{"music.note", "", 14, 14, false}));
    const Drawing drawing{18, 18, true, {FillOval{{0, 0, 18, 18}, {}}}};
    button->setImage(CocoaImageRenderer().render(drawing));
    EXPECT_EQ(probe::statusImage(), (probe::StatusImage{"", "", 18, 18, true}));
}

TEST_F(CocoaStatusBarTest, ShowsAPictureAsItIsOnceItIsVisible)
{
    EXPECT_FALSE(probe::showsThePictureAsItIs());
    item_->setVisible(true);
    EXPECT_TRUE(probe::showsThePictureAsItIs());
}

TEST_F(CocoaStatusBarTest, ComesAndGoes)
{
    EXPECT_TRUE(probe::hasStatusItem());
    item_->setVisible(false);
    EXPECT_FALSE(probe::hasStatusItem());
    item_->setVisible(true);
    EXPECT_TRUE(probe::hasStatusItem());
    item_ = nullptr;
    EXPECT_FALSE(probe::hasStatusItem());
}

TEST_F(CocoaStatusBarTest, ShowsTheMenusItems)
{
    MenuItem header;
    header.title = "A & B_c";
    MenuItem styled;
    styled.attributedTitle = {"two\nlines", FontRole::smallMenu, ColorRole::secondaryLabel};
    MenuItem separator;
    separator.isSeparator = true;
    MenuItem checked = action("Mute");
    checked.isChecked = true;
    menu_->setItems({header, styled, separator, checked});
    EXPECT_EQ(probe::statusMenu(), (std::vector<ShownItem>{{"A & B_c", false, false, false},
                                                           {"two\nlines", false, false, true},
                                                           {"-", false, false, false},
                                                           {"Mute", true, true, false}}));
}

TEST_F(CocoaStatusBarTest, OpensItsMenuOnAPressAfterItHasBeenRebuiltAndRunsTheChosenItem)
{
    int opened = 0;
    menu_->setItems({action("old")});
    const auto handle = menu_->onWillOpen([&] {
        ++opened;
        menu_->setItems({action("first"), action("second")});
    });
    auto user = std::async(std::launch::async, [] { return probe::chooseFromStatusMenu("second"); });
    EXPECT_TRUE(
        probe::runUntil([&] { return user.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
    EXPECT_TRUE(user.get());
    EXPECT_EQ(opened, 1);
    EXPECT_EQ(chosen_, std::vector<std::string>{"second"});
}

}  // namespace
}  // namespace sonvara::test
