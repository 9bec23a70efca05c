// The status item's icon: which one is shown, and when they are rendered.
#include "StatusBarFixture.h"

#include <gmock/gmock.h>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

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

TEST_F(StatusBarControllerTest, IconsThatCannotBeRenderedBringTheNamedSymbolBack)
{
    desktop.images.takes = 1s;
    desktop.images.fails = true;
    start();
    controller->updateIcon(true);
    desktop.time.run();
    EXPECT_EQ(bar().button.symbol->accessibilityDescription, "");
    desktop.time.advance(2s);
    EXPECT_EQ(bar().button.symbol->name, "music.note");
    EXPECT_EQ(bar().button.symbol->accessibilityDescription, "Sonvara");
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

TEST_F(StatusBarControllerTest, AControllerWhoseIconsAreBeingRenderedStaysUntilTheyAreCached)
{
    desktop.images.takes = 1s;
    start();
    desktop.time.run();
    const std::weak_ptr weak = controller;
    controller.reset();
    EXPECT_FALSE(weak.expired());
    desktop.time.advance(2s);
    EXPECT_THAT(messages(LogLevel::debug),
                testing::Contains("Caching custom icons (playing: true, notPlaying: true)"));
    EXPECT_TRUE(weak.expired());
}

TEST_F(StatusBarControllerTest, ARefreshKeepsItsControllerUntilTheMenuIsRebuilt)
{
    start();
    desktop.time.run();
    const std::weak_ptr weak = controller;
    controller->refreshMenu();
    controller.reset();
    EXPECT_FALSE(weak.expired());
    desktop.time.run();
    EXPECT_TRUE(weak.expired());
}

TEST_F(StatusBarControllerTest, AControllerThatIsGoneBeforeRenderingRendersNothing)
{
    start();
    controller.reset();
    desktop.time.run();
    EXPECT_THAT(desktop.images.rendered, IsEmpty());
}

}  // namespace
}  // namespace sonvara::test
