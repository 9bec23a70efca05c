// A user in front of the program: the menu, the settings window and the log.
#include "AppTest.h"
#include "Mouse.h"
#include "Probe.h"
#include "StripProbe.h"

namespace sonvara::test {
namespace {

using probe::ButtonState;
using probe::ShownItem;
using Texts = std::vector<std::string>;

constexpr const char* window = "Sonvara Settings";
constexpr const char* sheet = "Sonvara Settings/sheet";
constexpr ButtonState on{true, true};
constexpr ButtonState off{true, false};

class UserTest : public AppTest {
protected:
    static std::optional<ButtonState> control(const std::string& title, const std::string& place = window)
    {
        return onMain([&] { return probe::button(place, title); });
    }

    /// Of a switch, whose state tells.
    static bool becomes(const std::string& title, ButtonState state)
    {
        return eventually([&] { return probe::button(window, title) == state; });
    }

    static bool isEnabled(const std::string& title, const std::string& place = window)
    {
        const auto state = control(title, place);
        return state && state->isEnabled;
    }

    static void press(const std::string& title, const std::string& place = window)
    {
        onMain([&] { probe::press(place, title); });
    }

    static bool isMuteChecked() { return onMain(probe::statusMenu).at(5).isChecked; }
};

TEST_F(UserTest, SeesTheWholeMenu)
{
    launch();
    EXPECT_EQ(onMain(probe::statusMenu), (std::vector<ShownItem>{{"Currently Playing", false, false, false},
                                                                 {"No music playing", false, false, false},
                                                                 {"DJ Chat:", false, false, false},
                                                                 {"—", false, false, false},
                                                                 {"-", false, false, false},
                                                                 {"Mute DJ", true, false, false},
                                                                 {"-", false, false, false},
                                                                 {"Settings...", true, false, false},
                                                                 {"-", false, false, false},
                                                                 {"Quit Sonvara", true, false, false}}));
}

TEST_F(UserTest, FindsTheDefaultsInTheSettingsWindow)
{
    launch();
    openSettings();
    EXPECT_EQ(onMain([] { return probe::styleMask(window); }), 7UL);
    EXPECT_EQ(control("Announce tracks"), on);
    EXPECT_EQ(control("Lower music while speaking"), on);
    EXPECT_EQ(control("Use AI for intros"), off);
    EXPECT_EQ(control("Launch at login"), off);
    EXPECT_TRUE(isEnabled("View log (0)"));
    const auto engine = onMain([] { return probe::popUp(window); });
    EXPECT_EQ(engine.options, (Texts{"Claude (Anthropic) CLI", "Gemini CLI"}));
    EXPECT_EQ(engine.selected, 0);
    EXPECT_FALSE(engine.isEnabled);
    for (const std::string& text : onMain([] { return probe::texts(window); })) {
        EXPECT_TRUE(onMain([&text] { return probe::isWhole(window, text); })) << text;
    }
}

TEST_F(UserTest, MutesInTheMenuAndSeesItInTheWindowAndBack)
{
    launch();
    openSettings();
    ASSERT_TRUE(probe::chooseFromStatusMenu("Mute DJ"));
    EXPECT_TRUE(isMuteChecked());
    EXPECT_TRUE(becomes("Announce tracks", off));
    press("Announce tracks");
    EXPECT_EQ(control("Announce tracks"), on);
    ASSERT_TRUE(probe::chooseFromStatusMenu("Mute DJ"));
    ASSERT_TRUE(probe::chooseFromStatusMenu("Mute DJ"));
    EXPECT_FALSE(isMuteChecked());
}

TEST_F(UserTest, GetsOneWindowAtATime)
{
    launch();
    openSettings();
    openSettings();
    EXPECT_EQ(onMain([] { return probe::countWindows(window); }), 1);
    onMain([] { probe::pressCloseButton(window); });
    ASSERT_TRUE(eventually([] { return probe::countWindows(window) == 0; }));
    openSettings();
    EXPECT_EQ(onMain([] { return probe::countWindows(window); }), 1);
}

TEST_F(UserTest, SwitchesTheEngineOnAndOff)
{
    launch();
    openSettings();
    press("Use AI for intros");
    EXPECT_TRUE(eventually([] { return probe::popUp(window).isEnabled; }));
    onMain([] { probe::choose(window, 1); });
    press("Use AI for intros");
    EXPECT_TRUE(eventually([] { return !probe::popUp(window).isEnabled; }));
    EXPECT_EQ(onMain([] { return probe::popUp(window); }).selected, 1);
}

TEST_F(UserTest, RegistersALoginItem)
{
    standins::setLoginItem(standins::LoginState::notRegistered, {});
    launch();
    openSettings();
    press("Launch at login");
    EXPECT_TRUE(becomes("Launch at login", on));
    EXPECT_EQ(standins::loginItem(), standins::LoginState::enabled);
    press("Launch at login");
    EXPECT_TRUE(becomes("Launch at login", off));
    EXPECT_EQ(standins::loginItem(), standins::LoginState::notRegistered);
}

TEST_F(UserTest, SeesThatALoginItemCouldNotBeRegistered)
{
    standins::setLoginItem(standins::LoginState::notRegistered, "The signature is invalid");
    launch();
    openSettings();
    testing::internal::CaptureStdout();
    press("Launch at login");
    EXPECT_TRUE(becomes("Launch at login", off));
    const std::string output = testing::internal::GetCapturedStdout();
    EXPECT_EQ(output.rfind("Failed to toggle launch at login: ", 0), 0U) << output;
    EXPECT_NE(output.find("The signature is invalid"), std::string::npos) << output;
}

TEST_F(UserTest, ReadsCopiesAndClearsTheLog)
{
    launch();
    openSettings();
    press("View log (0)");
    ASSERT_TRUE(
        eventually([] { return probe::hasText(sheet, "No activity yet. Play a track with AI intros on."); }));
    EXPECT_FALSE(isEnabled("Copy", sheet));
    players_.set("Spotify", {true, true, "A Song", "An Artist", "An Album"});
    spotifyPosts("Playing", "A Song", "An Artist", "An Album");
    const std::string message = "Spoke: " + lines(1).at(0).line;
    EXPECT_TRUE(eventually([&] { return probe::hasText(sheet, message); }));
    EXPECT_TRUE(eventually([] { return probe::button(window, "View log (1)").has_value(); }));

    press("Copy", sheet);
    const std::string copied = onMain(probe::clipboard);
    EXPECT_EQ(copied.substr(0, 1), "[");
    EXPECT_EQ(copied.substr(9), "] INFO: " + message);

    press("Clear", sheet);
    EXPECT_TRUE(eventually([] { return !probe::button(sheet, "Clear")->isEnabled; }));
    EXPECT_TRUE(isEnabled("Done", sheet));
    EXPECT_FALSE(onMain([&] { return probe::hasText(sheet, message); }));
    press("Done", sheet);
    EXPECT_TRUE(eventually([] { return !probe::isShown(sheet); }));
    EXPECT_TRUE(onMain([] { return probe::isShown(window); }));
}

TEST_F(UserTest, DismissesTheLogByEscape)
{
    launch();
    openSettings();
    press("View log (0)");
    ASSERT_TRUE(eventually([] { return probe::isShown(sheet); }));
    onMain([] { probe::pressEscape(sheet); });
    EXPECT_TRUE(eventually([] { return !probe::isShown(sheet); }));
    press("View log (0)");
    EXPECT_TRUE(eventually([] { return probe::isShown(sheet); }));
}

TEST_F(UserTest, ClosesTheSettingsByTheKeyboard)
{
    launch();
    openSettings();
    onMain([] { probe::pressCommand(window, "w"); });
    EXPECT_TRUE(eventually([] { return probe::countWindows(window) == 0; }));
}

TEST_F(UserTest, MiniaturizesTheSettingsByTheKeyboard)
{
    launch();
    openSettings();
    onMain([] { probe::pressCommand(window, "m"); });
    EXPECT_TRUE(eventually([] { return !probe::isShown(window); }));
}

TEST_F(UserTest, CopiesALineOfTheLogByTheKeyboard)
{
    launch();
    openSettings();
    press("View log (0)");
    ASSERT_TRUE(eventually([] { return probe::isShown(sheet); }));
    players_.set("Spotify", {true, true, "A Song", "An Artist", "An Album"});
    spotifyPosts("Playing", "A Song", "An Artist", "An Album");
    const std::string message = "Spoke: " + lines(1).at(0).line;
    ASSERT_TRUE(eventually([&] { return probe::hasText(sheet, message); }));
    onMain([&] {
        probe::setClipboard("before");
        probe::select(sheet, message);
        probe::pressCommand(sheet, "a");
        probe::pressCommand(sheet, "c");
    });
    EXPECT_EQ(onMain(probe::clipboard), message);
}

TEST_F(UserTest, QuitsByTheKeyboardWhileTheLogIsOpen)
{
    launch();
    openSettings();
    press("View log (0)");
    ASSERT_TRUE(eventually([] { return probe::isShown(sheet); }));
    quit({}, [] { postToMainThread([] { probe::pressCommand(window, "q"); }); });
}

TEST_F(UserTest, QuitsFromTheMenuWhileTheLogIsOpen)
{
    launch();
    openSettings();
    press("View log (0)");
    ASSERT_TRUE(eventually([] { return probe::isShown(sheet); }));
    quit();
}

// These share a session, each with a process of its own, in this order.
class SettingsTest : public UserTest {};

TEST_F(SettingsTest, AreChangedBeforeTheProgramQuits)
{
    launch();
    openSettings();
    press("Announce tracks");
    press("Use AI for intros");
    ASSERT_TRUE(eventually([] { return probe::popUp(window).isEnabled; }));
    onMain([] { probe::choose(window, 1); });
    quit();
}

TEST_F(SettingsTest, AreKeptForTheNextProcess)
{
    launch();
    EXPECT_TRUE(isMuteChecked());
    openSettings();
    EXPECT_EQ(control("Announce tracks"), off);
    EXPECT_EQ(control("Use AI for intros"), on);
    EXPECT_EQ(control("Lower music while speaking"), on);
    EXPECT_EQ(onMain([] { return probe::popUp(window); }).selected, 1);
}

}  // namespace
}  // namespace sonvara::test
