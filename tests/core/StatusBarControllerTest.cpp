// The status item's menu, icon and settings window.
#include "ui/StatusBarController.h"

#include "fakes/FakeDesktop.h"
#include "monitor/MusicMonitor.h"
#include "speech/SpeechManager.h"

#include <gmock/gmock.h>

#include <chrono>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class StatusBarControllerTest : public testing::Test {
protected:
    FakeDesktop desktop;
    DJLog* log = desktop.log.get();
    std::shared_ptr<MusicMonitor> monitor = MusicMonitor::create(desktop.platform);
    std::shared_ptr<SpeechManager> speech = SpeechManager::create(desktop.platform);
    std::shared_ptr<StatusBarController> controller;

    void start() { controller = StatusBarController::create(desktop.platform, monitor, speech); }
    [[nodiscard]] StatusBarState& bar() { return desktop.statusBar.state; }
    [[nodiscard]] const MenuItem& item(std::size_t number) { return bar().menu->items.at(number - 1); }
    [[nodiscard]] std::vector<std::string> messages(LogLevel level) const
    {
        return desktop.systemLog.texts(level, "StatusBarController");
    }
    void nowPlaying(bool isPlaying, const char* track, const char* artist)
    {
        monitor->isPlaying.set(isPlaying);
        monitor->artistName.set(artist);
        monitor->trackName.set(track);
        controller->menuWillOpen();
    }
    void say(const std::string& line)
    {
        log->lastChat.set(line);
        controller->menuWillOpen();
    }
};

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

TEST_F(StatusBarControllerTest, WithoutAButtonNothingIsDrawn)
{
    bar().givesButton = false;
    start();
    EXPECT_THAT(messages(LogLevel::error), ElementsAre("Failed to acquire status item button"));
    controller->updateIcon(true);
    desktop.time.run();
    EXPECT_THAT(desktop.images.rendered, IsEmpty());
    EXPECT_EQ(bar().button.changes, 0);
    EXPECT_THAT(messages(LogLevel::error),
                ElementsAre("Failed to acquire status item button",
                            "updateIcon requested but cached icon missing (isPlaying=true)"));
    EXPECT_THAT(messages(LogLevel::debug),
                ElementsAre("Initializing status bar controller", "Status icon updated (isPlaying=true)"));
}

TEST_F(StatusBarControllerTest, ThePlaceholderIsShownUntilTheIconsAreThere)
{
    start();
    ASSERT_TRUE(bar().button.symbol);
    EXPECT_EQ(bar().button.symbol->name, "music.note");
    EXPECT_EQ(bar().button.symbol->accessibilityDescription, "Sonvara");
    desktop.time.run();
    ASSERT_NE(bar().button.image, nullptr);
    EXPECT_TRUE(bar().button.image->drawing.isTemplate);
    EXPECT_THAT(messages(LogLevel::debug),
                ElementsAre("Initializing status bar controller",
                            "Configured status button with placeholder icon",
                            "Caching custom icons (playing: true, notPlaying: true)"));
}

TEST_F(StatusBarControllerTest, TheNotPlayingIconIsRenderedFirstAtUserInitiatedQuality)
{
    start();
    desktop.time.run();
    ASSERT_EQ(desktop.images.rendered.size(), 2U);
    EXPECT_TRUE(desktop.images.rendered[0].isTemplate);
    EXPECT_FALSE(desktop.images.rendered[1].isTemplate);
    EXPECT_EQ(desktop.time.postedQualities().back(), QualityOfService::userInitiated);
}

TEST_F(StatusBarControllerTest, AnUpdateBeforeCachingShowsTheBareSymbolAndCachingThenTheNotPlayingIcon)
{
    desktop.images.takes = 1s;
    start();
    controller->updateIcon(true);
    desktop.time.run();
    EXPECT_THAT(messages(LogLevel::error),
                ElementsAre("updateIcon requested but cached icon missing (isPlaying=true)"));
    ASSERT_TRUE(bar().button.symbol);
    EXPECT_EQ(bar().button.symbol->accessibilityDescription, "") << "unlike the placeholder's";
    desktop.time.advance(2s);
    ASSERT_NE(bar().button.image, nullptr);
    EXPECT_TRUE(bar().button.image->drawing.isTemplate) << "even while music plays, until the next update";
    controller->updateIcon(true);
    desktop.time.run();
    EXPECT_FALSE(bar().button.image->drawing.isTemplate);
}

TEST_F(StatusBarControllerTest, IconsThatCannotBeRenderedLeaveTheNamedSymbol)
{
    desktop.images.fails = true;
    start();
    desktop.time.run();
    EXPECT_EQ(bar().button.symbol->accessibilityDescription, "Sonvara");
    EXPECT_THAT(messages(LogLevel::debug),
                testing::Contains("Caching custom icons (playing: false, notPlaying: false)"));
}

TEST_F(StatusBarControllerTest, TheSameUpdateTwiceSetsAndLogsTwice)
{
    start();
    desktop.time.run();
    const auto changes = bar().button.changes;
    controller->updateIcon(true);
    controller->updateIcon(true);
    desktop.time.run();
    EXPECT_EQ(bar().button.changes, changes + 2);
    EXPECT_THAT(messages(LogLevel::debug),
                testing::Contains("Status icon updated (isPlaying=true)").Times(2));
}

TEST_F(StatusBarControllerTest, AControllerThatIsGoneUpdatesAndLogsNothing)
{
    start();
    desktop.time.run();
    const auto logged = desktop.systemLog.messages.size();
    controller->updateIcon(true);
    controller.reset();
    desktop.time.run();
    EXPECT_EQ(desktop.systemLog.messages.size(), logged);
}

TEST_F(StatusBarControllerTest, AControllerThatIsGoneBeforeRenderingRendersNothing)
{
    start();
    controller.reset();
    desktop.time.run();
    EXPECT_THAT(desktop.images.rendered, IsEmpty());
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
