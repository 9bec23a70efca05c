// The settings form as a value.
#include "ui/SettingsView.h"

#include "fakes/FakeDesktop.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace sonvara::test {
namespace {

using testing::ElementsAre;

class SettingsViewTest : public testing::Test {
protected:
    FakeDesktop desktop;
    DJLog* log = desktop.log.get();
    std::shared_ptr<const Form> form = SettingsView::create(desktop.platform)->form();

    template <typename Row>
    [[nodiscard]] const Row& row(std::size_t section, std::size_t number) const
    {
        return std::get<Row>(form->sections.at(section).rows.at(number));
    }
    [[nodiscard]] const Toggle& announce() const { return row<Toggle>(0, 0); }
    [[nodiscard]] const Toggle& duck() const { return row<Toggle>(0, 1); }
    [[nodiscard]] const Toggle& useAI() const { return row<Toggle>(1, 0); }
    [[nodiscard]] const Picker& engine() const { return row<Picker>(1, 1); }
    [[nodiscard]] const Toggle& launchAtLogin() const { return row<Toggle>(2, 0); }
    [[nodiscard]] const PushButton& viewLog() const { return row<PushButton>(3, 0); }

    void expectHelp(std::size_t section, std::size_t number, const std::string& text) const
    {
        const auto& help = row<StyledText>(section, number);
        EXPECT_EQ(help.text, text);
        EXPECT_EQ(help.font, FontRole::caption);
        EXPECT_EQ(help.color, ColorRole::secondaryLabel);
    }
};

TEST_F(SettingsViewTest, HasFourSectionsInAFixedFrame)
{
    EXPECT_EQ(form->width, 420);
    EXPECT_EQ(form->height, 420);
    std::vector<std::string> headers;
    std::vector<std::size_t> rows;
    for (const auto& section : form->sections) {
        headers.push_back(section.header);
        rows.push_back(section.rows.size());
    }
    EXPECT_THAT(headers, ElementsAre("Announcements", "AI intros", "General", "Diagnostics"));
    EXPECT_THAT(rows, ElementsAre(3U, 3U, 1U, 2U));
}

TEST_F(SettingsViewTest, TitlesAndHelpTextsAreTheProducts)
{
    EXPECT_EQ(announce().title, "Announce tracks");
    EXPECT_EQ(duck().title, "Lower music while speaking");
    EXPECT_EQ(useAI().title, "Use AI for intros");
    EXPECT_EQ(engine().title, "Engine");
    EXPECT_EQ(launchAtLogin().title, "Launch at login");
    expectHelp(
        0, 2,
        "Skips tracks played straight through from the same album, and only speaks on a new or next track "
        "(never on resume).");
    expectHelp(1, 2,
               "Runs your local CLI (already signed in, no API key). Claude is faster; Gemini is a little "
               "slower. If "
               "it stalls, Sonvara uses an offline line.");
    expectHelp(3, 1, "Shows recent activity, including AI CLI calls and any failures.");
}

TEST_F(SettingsViewTest, AFreshInstallationShowsTheDefaults)
{
    EXPECT_TRUE(announce().isOn.get());
    EXPECT_TRUE(duck().isOn.get());
    EXPECT_FALSE(useAI().isOn.get());
    EXPECT_FALSE(engine().isEnabled());
    EXPECT_EQ(engine().selection.get(), "claudeCLI");
    EXPECT_TRUE(desktop.defaults.values.empty()) << "showing the defaults stores nothing";
}

TEST_F(SettingsViewTest, TogglesWriteTheStoreAtOnce)
{
    announce().isOn.set(false);
    duck().isOn.set(false);
    useAI().isOn.set(true);
    EXPECT_EQ(desktop.defaults.values.at("announcementsEnabled"), FakeUserDefaults::Value(false));
    EXPECT_EQ(desktop.defaults.values.at("duckMusic"), FakeUserDefaults::Value(false));
    EXPECT_EQ(desktop.defaults.values.at("aiIntros"), FakeUserDefaults::Value(true));
    EXPECT_FALSE(announce().isOn.get());
}

TEST_F(SettingsViewTest, ThePickerOffersBothToolsAndIsEnabledWithAIIntrosOnly)
{
    ASSERT_EQ(engine().options.size(), 2U);
    EXPECT_EQ(engine().options[0].label, "Claude (Anthropic) CLI");
    EXPECT_EQ(engine().options[0].tag, "claudeCLI");
    EXPECT_EQ(engine().options[1].label, "Gemini CLI");
    EXPECT_EQ(engine().options[1].tag, "geminiCLI");
    useAI().isOn.set(true);
    EXPECT_TRUE(engine().isEnabled());
    engine().selection.set("geminiCLI");
    useAI().isOn.set(false);
    EXPECT_FALSE(engine().isEnabled());
    EXPECT_EQ(engine().selection.get(), "geminiCLI") << "the chosen engine is kept";
}

TEST_F(SettingsViewTest, AnUnknownEngineIsShownAsItIsAndNotCorrected)
{
    desktop.defaults.values["aiProvider"] = std::string("other");
    EXPECT_EQ(engine().selection.get(), "other");
    EXPECT_EQ(desktop.defaults.values.at("aiProvider"), FakeUserDefaults::Value(std::string("other")));
}

TEST_F(SettingsViewTest, LaunchAtLoginTogglesTheRegistrationWhateverTheNewValue)
{
    EXPECT_FALSE(launchAtLogin().isOn.get());
    launchAtLogin().isOn.set(false);
    EXPECT_TRUE(launchAtLogin().isOn.get());
    EXPECT_EQ(desktop.loginItem.state, LoginItemStatus::enabled);
    launchAtLogin().isOn.set(false);
    EXPECT_FALSE(launchAtLogin().isOn.get());
}

TEST_F(SettingsViewTest, LaunchAtLoginStaysAfterAFailure)
{
    desktop.loginItem.error = "no";
    testing::internal::CaptureStdout();
    launchAtLogin().isOn.set(true);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Failed to toggle launch at login: no\n");
    EXPECT_FALSE(launchAtLogin().isOn.get());
}

TEST_F(SettingsViewTest, AppearingReadsTheRegistrationAgain)
{
    desktop.loginItem.state = LoginItemStatus::enabled;
    EXPECT_FALSE(launchAtLogin().isOn.get());
    form->onAppear();
    EXPECT_TRUE(launchAtLogin().isOn.get());
}

TEST_F(SettingsViewTest, TheButtonCountsTheEntriesAndOpensTheSheetAlsoWhenEmpty)
{
    EXPECT_EQ(viewLog().title(), "View log (0)");
    EXPECT_FALSE(form->isSheetShown.get());
    viewLog().action();
    EXPECT_TRUE(form->isSheetShown.get());
    for (int i = 0; i < 12; ++i) log->log("entry", DJLog::Level::info);
    desktop.time.run();
    EXPECT_EQ(viewLog().title(), "View log (12)");
    EXPECT_TRUE(viewLog().isEnabled());
}

TEST_F(SettingsViewTest, DoneDismissesTheSheet)
{
    form->isSheetShown.set(true);
    const auto sheet = form->sheet();
    sheet.buttons.at(2).action();
    EXPECT_FALSE(form->isSheetShown.get());
}

TEST_F(SettingsViewTest, AChangeMadeElsewhereIsSignalled)
{
    int changes = 0;
    auto handle = form->onChange([&changes] { ++changes; });
    desktop.time.run();
    EXPECT_EQ(changes, 0);
    desktop.defaults.setBool("announcementsEnabled", false);
    desktop.time.run();
    EXPECT_EQ(changes, 1);
    log->log("entry", DJLog::Level::info);
    desktop.time.run();
    EXPECT_EQ(changes, 2);
    desktop.loginItem.state = LoginItemStatus::enabled;
    form->onAppear();
    desktop.time.run();
    EXPECT_EQ(changes, 3);
    viewLog().action();
    desktop.time.run();
    EXPECT_EQ(changes, 4);
    handle.reset();
    desktop.defaults.setBool("announcementsEnabled", true);
    desktop.time.run();
    EXPECT_EQ(changes, 4);
}

TEST_F(SettingsViewTest, SeveralChangesInOneTurnAreSignalledOnceAfterAllOfThem)
{
    std::vector<bool> seen;
    const auto handle = form->onChange([&] { seen.push_back(form->isSheetShown.get()); });
    desktop.defaults.setBool("duckMusic", false);
    viewLog().action();
    desktop.time.run();
    EXPECT_THAT(seen, ElementsAre(true));
}

TEST_F(SettingsViewTest, AHandleDroppedBeforeTheSignalIsDeliveredKeepsItQuiet)
{
    int changes = 0;
    auto handle = form->onChange([&changes] { ++changes; });
    desktop.defaults.setBool("duckMusic", false);
    handle.reset();
    desktop.time.run();
    EXPECT_EQ(changes, 0);
}

}  // namespace
}  // namespace sonvara::test
