// The status item's menu, and the settings window that it opens.
#include "StatusBarFixture.h"

#include <gmock/gmock.h>

namespace sonvara::test {
namespace {

using testing::ElementsAre;

TEST_F(StatusBarControllerTest, TheMenuHasTenItemsInOrder)
{
    start();
    ASSERT_EQ(bar().menu->items.size(), 10U);
    std::vector<std::string> titles;
    std::string enabled;
    for (const auto& each : bar().menu->items) {
        titles.push_back(each.isSeparator ? "---" : each.title);
        enabled += each.isEnabled ? '1' : '0';
        EXPECT_EQ(each.isEnabled, static_cast<bool>(each.action));
        EXPECT_EQ(each.isChecked.has_value(), each.title == "Mute DJ") << each.title;
    }
    EXPECT_THAT(titles, ElementsAre("Currently Playing", "No music playing", "DJ Chat:", "—", "---",
                                    "Mute DJ", "---", "Settings...", "---", "Quit Sonvara"));
    EXPECT_EQ(enabled, "0000010101");
    EXPECT_EQ(bar().attachedMenu, bar().menu);
    EXPECT_TRUE(bar().isVisible);
}

TEST_F(StatusBarControllerTest, NothingPlaysWhenPausedOrWithoutATrackName)
{
    start();
    nowPlaying(false, "Song", "Artist");
    EXPECT_EQ(item(2).title, "No music playing");
    nowPlaying(true, "", "Artist");
    EXPECT_EQ(item(2).title, "No music playing");
    nowPlaying(true, "Song", "Artist");
    EXPECT_EQ(item(2).title, "Song - Artist");
}

TEST_F(StatusBarControllerTest, TitlesAreShownAsTheyAre)
{
    start();
    const std::string titles[] = {std::string(1'000'000, 'x'), "two\nlines\tand a tab", " A & _B ",
                                  std::string("a\0b", 3),      "\u202eesrever",         "\xff"};
    for (const auto& title : titles) {
        nowPlaying(true, title, title);
        EXPECT_TRUE(item(2).title == title + " - " + title) << title.substr(0, 40);
    }
}

TEST_F(StatusBarControllerTest, AnEmptyArtistLeavesTheDash)
{
    start();
    nowPlaying(true, "Song", "");
    EXPECT_EQ(item(2).title, "Song - ");
}

TEST_F(StatusBarControllerTest, TheLastLineIsWrappedSmallAndSecondary)
{
    start();
    EXPECT_EQ(item(4).title, "—");
    EXPECT_FALSE(item(4).attributedTitle);
    say("Coming your way Song 1 by Artist A, from Album A.");
    ASSERT_TRUE(item(4).attributedTitle);
    EXPECT_EQ(item(4).attributedTitle->text, "Coming your way Song 1 by Artist A, from\nAlbum A.");
    EXPECT_EQ(item(4).attributedTitle->font, FontRole::smallMenu);
    EXPECT_EQ(item(4).attributedTitle->color, ColorRole::secondaryLabel);
}

TEST_F(StatusBarControllerTest, TheLastLineIsBrokenAtFortyCharacters)
{
    start();
    say("1234567890123456789 12345678901234567890 1");
    EXPECT_EQ(item(4).attributedTitle->text, "1234567890123456789 12345678901234567890\n1");
    say("12345678901234567890 12345678901234567890");
    EXPECT_EQ(item(4).attributedTitle->text, "12345678901234567890\n12345678901234567890");
}

TEST_F(StatusBarControllerTest, ALastLineOfBlanksIsAnEmptyAttributedTitle)
{
    start();
    say("   ");
    ASSERT_TRUE(item(4).attributedTitle);
    EXPECT_EQ(item(4).attributedTitle->text, "");
}

TEST_F(StatusBarControllerTest, MuteIsUncheckedByDefaultAndTogglesAtOnce)
{
    start();
    EXPECT_EQ(item(6).isChecked, false);
    bar().menu->choose("Mute DJ");
    EXPECT_EQ(desktop.defaults.values.at("announcementsEnabled"), FakeUserDefaults::Value(false));
    EXPECT_EQ(item(6).isChecked, true);
    bar().menu->choose("Mute DJ");
    EXPECT_EQ(desktop.defaults.values.at("announcementsEnabled"), FakeUserDefaults::Value(true));
    EXPECT_EQ(item(6).isChecked, false);
}

TEST_F(StatusBarControllerTest, MutingDoesNotStopALineThatIsBeingSpoken)
{
    start();
    desktop.voice.speak({"A line", std::nullopt, 0.5});
    bar().menu->choose("Mute DJ");
    desktop.time.run();
    EXPECT_TRUE(desktop.voice.isSpeaking());
}

TEST_F(StatusBarControllerTest, OpeningTheMenuShowsTheStateOfThatMoment)
{
    start();
    desktop.defaults.values["announcementsEnabled"] = false;
    EXPECT_EQ(item(6).isChecked, false);
    bar().menu->open();
    EXPECT_EQ(item(6).isChecked, true);
}

TEST_F(StatusBarControllerTest, ARefreshIsQueuedFromAnyThreadAndEachOneRebuilds)
{
    start();
    desktop.time.post(QualityOfService::standard, [this] {
        controller->refreshMenu();
        controller->refreshMenu();
    });
    EXPECT_EQ(bar().menu->rebuilds, 1);
    desktop.time.run();
    EXPECT_EQ(bar().menu->rebuilds, 3);
}

TEST_F(StatusBarControllerTest, QuitGoesThroughTheApplication)
{
    start();
    bar().menu->choose("Quit Sonvara");
    EXPECT_EQ(desktop.application.terminations, 1);
}

TEST_F(StatusBarControllerTest, AnItemThatOutlivesTheControllerDoesNothing)
{
    start();
    const auto mute = item(6).action;
    controller.reset();
    mute();
    EXPECT_TRUE(desktop.defaults.values.empty());
}

TEST_F(StatusBarControllerTest, SettingsOpenACentredWindowOfTheirOwnStyle)
{
    start();
    bar().menu->choose("Settings...");
    const auto window = desktop.windows.latest();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->setup.title, "Sonvara Settings");
    EXPECT_EQ(window->setup.contentWidth, 420);
    EXPECT_EQ(window->setup.contentHeight, 360);
    EXPECT_TRUE(window->setup.isClosable);
    EXPECT_TRUE(window->setup.isMiniaturizable);
    EXPECT_FALSE(window->setup.isResizable);
    EXPECT_TRUE(window->setup.isCentered);
    EXPECT_EQ(window->broughtToFront, 1);
    EXPECT_EQ(desktop.application.activations, 1);
}

TEST_F(StatusBarControllerTest, AWindowIsShownThenTheApplicationThenItIsKeptAndLastHeard)
{
    start();
    controller->openSettings();
    desktop.windows.latest()->isMiniaturized = true;
    std::string order;
    desktop.windows.onFront = [&](const FakeWindow& window) {
        order += "front ";
        EXPECT_TRUE(window.delegate.expired());
        EXPECT_FALSE(desktop.windows.made[0].expired());
    };
    desktop.application.onActivate = [&] {
        order += "activate ";
        EXPECT_TRUE(desktop.windows.latest()->delegate.expired());
        EXPECT_FALSE(desktop.windows.made[0].expired()) << "the earlier one is dropped after that";
    };
    controller->openSettings();
    EXPECT_EQ(order, "front activate ");
    EXPECT_TRUE(desktop.windows.made[0].expired());
    EXPECT_EQ(desktop.windows.latest()->delegate.lock(), controller);
}

TEST_F(StatusBarControllerTest, AVisibleWindowIsShownBeforeTheApplication)
{
    start();
    std::string order;
    desktop.windows.onFront = [&](const FakeWindow&) { order += "front "; };
    desktop.application.onActivate = [&] { order += "activate "; };
    controller->openSettings();
    order.clear();
    controller->openSettings();
    EXPECT_EQ(order, "front activate ");
}

TEST_F(StatusBarControllerTest, SettingsChosenAgainBringTheVisibleWindowToTheFront)
{
    start();
    controller->openSettings();
    controller->openSettings();
    EXPECT_EQ(desktop.windows.made.size(), 1U);
    EXPECT_EQ(desktop.windows.latest()->broughtToFront, 2);
    EXPECT_EQ(desktop.application.activations, 2);
}

TEST_F(StatusBarControllerTest, AMiniaturisedWindowIsReplacedAndDropped)
{
    start();
    controller->openSettings();
    desktop.windows.latest()->isMiniaturized = true;
    controller->openSettings();
    ASSERT_EQ(desktop.windows.made.size(), 2U);
    EXPECT_TRUE(desktop.windows.made[0].expired());
    EXPECT_TRUE(desktop.windows.latest()->isVisible());
}

TEST_F(StatusBarControllerTest, AClosedWindowIsForgottenAndTheNextOneIsFresh)
{
    start();
    controller->openSettings();
    desktop.windows.latest()->setup.content->isSheetShown.set(true);
    desktop.windows.latest()->close();
    EXPECT_EQ(desktop.windows.latest(), nullptr);
    controller->openSettings();
    ASSERT_EQ(desktop.windows.made.size(), 2U);
    EXPECT_FALSE(desktop.windows.latest()->setup.content->isSheetShown.get());
}

TEST_F(StatusBarControllerTest, TheCloseOfAnotherWindowIsIgnored)
{
    start();
    controller->openSettings();
    FakeWindow other({});
    controller->windowWillClose(other);
    EXPECT_NE(desktop.windows.latest(), nullptr);
}

}  // namespace
}  // namespace sonvara::test
