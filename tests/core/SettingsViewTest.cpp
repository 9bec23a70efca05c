// The settings form as a value.
#include "ui/SettingsView.h"

#include "fakes/FakeDesktop.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

namespace sonvara::test {
namespace {

using testing::ElementsAre;

class SettingsViewTest : public testing::Test {
protected:
    FakeDesktop desktop;
    DJLog* log = &DJLog::shared();
    std::shared_ptr<const Form> form = SettingsView::create(desktop.platform)->form();

    template <typename Row>
    [[nodiscard]] const Row& row(const std::string& title) const
    {
        for (const auto& section : form->sections) {
            for (const auto& any : section.rows) {
                if (titleOf(any) == title) return std::get<Row>(any);
            }
        }
        throw std::out_of_range("no row " + title);
    }
    [[nodiscard]] const Toggle& announce() const { return row<Toggle>("Announce tracks"); }
    [[nodiscard]] const Toggle& duck() const { return row<Toggle>("Lower music while speaking"); }
    [[nodiscard]] const Toggle& useAI() const { return row<Toggle>("Use AI for intros"); }
    [[nodiscard]] const Picker& engine() const { return row<Picker>("Engine"); }
    [[nodiscard]] const Toggle& launchAtLogin() const { return row<Toggle>("Launch at login"); }
    [[nodiscard]] const PushButton& viewLog() const { return row<PushButton>(logTitle); }

    [[nodiscard]] static std::string titleOf(const FormRow& row)
    {
        if (const auto* button = std::get_if<PushButton>(&row)) return button->title();
        if (const auto* text = std::get_if<StyledText>(&row)) return text->text;
        if (const auto* picker = std::get_if<Picker>(&row)) return picker->title;
        return std::get<Toggle>(row).title;
    }

    /// `part` of a form of which nothing else is left.
    template <typename Part>
    [[nodiscard]] Part alone(Part part)
    {
        form = SettingsView::create(desktop.platform)->form();
        return part;
    }

    std::string logTitle = "View log (0)";
};

TEST_F(SettingsViewTest, ShowsTheSettingsInTheirSectionsAndAHelpTextWhereOneIsNeeded)
{
    std::vector<std::string> shown;
    for (const auto& section : form->sections) {
        shown.push_back("* " + section.header);
        for (const auto& any : section.rows) shown.push_back(titleOf(any));
    }
    EXPECT_THAT(
        shown,
        ElementsAre(
            "* Announcements", "Announce tracks", "Lower music while speaking",
            "Skips tracks played straight through from the same album, and only speaks on a new or next "
            "track (never on resume).",
            "* AI intros", "Use AI for intros", "Engine",
            "Runs your local CLI (already signed in, no API key). Claude is faster; Gemini is a little "
            "slower. If it stalls, Sonvara uses an offline line.",
            "* General", "Launch at login",  //
            "* Diagnostics", "View log (0)",
            "Shows recent activity, including AI CLI calls and any failures."));
}

TEST_F(SettingsViewTest, HelpTextsAreSmallAndPale)
{
    int helps = 0;
    for (const auto& section : form->sections) {
        for (const auto& any : section.rows) {
            const auto* help = std::get_if<StyledText>(&any);
            if (help == nullptr) continue;
            EXPECT_EQ(help->font, FontRole::caption);
            EXPECT_EQ(help->color, ColorRole::secondaryLabel);
            ++helps;
        }
    }
    EXPECT_EQ(helps, 3);
}

TEST_F(SettingsViewTest, TheFrameIsFixed)
{
    EXPECT_EQ(form->width, 420);
    EXPECT_EQ(form->height, 420);
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

TEST_F(SettingsViewTest, EachPartOfTheFormKeepsWhatItNeeds)
{
    alone(form->onAppear)();
    EXPECT_FALSE(alone(launchAtLogin().isOn.get)());
    alone(launchAtLogin().isOn.set)(true);
    EXPECT_EQ(desktop.loginItem.state, LoginItemStatus::enabled);
    alone(viewLog().action)();
    alone(form->isSheetShown.set)(true);
    EXPECT_FALSE(alone(form->isSheetShown.get)());
    int changes = 0;
    const auto handle = alone(form->onChange)([&changes] { ++changes; });
    desktop.defaults.setBool("duckMusic", false);
    desktop.time.run();
    EXPECT_EQ(changes, 1);
    const auto sheet = alone(form->sheet)();
    form = nullptr;
    sheet.buttons.at(2).action();
}

TEST_F(SettingsViewTest, TheButtonCountsTheEntriesAndOpensTheSheetAlsoWhenEmpty)
{
    EXPECT_FALSE(form->isSheetShown.get());
    viewLog().action();
    EXPECT_TRUE(form->isSheetShown.get());
    for (int i = 0; i < 12; ++i) log->log("entry", DJLog::Level::info);
    desktop.time.run();
    logTitle = "View log (12)";
    EXPECT_TRUE(viewLog().isEnabled());
}

TEST_F(SettingsViewTest, ASheetThatIsDismissedOtherwiseIsShownNoMore)
{
    viewLog().action();
    form->isSheetShown.set(false);
    EXPECT_FALSE(form->isSheetShown.get());
}

TEST_F(SettingsViewTest, DoneDismissesTheSheet)
{
    form->isSheetShown.set(true);
    EXPECT_TRUE(form->isSheetShown.get());
    const auto sheet = form->sheet();
    const auto done =
        std::ranges::find(sheet.buttons, "Done", [](const auto& button) { return button.title(); });
    ASSERT_NE(done, sheet.buttons.end());
    done->action();
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
    logTitle = "View log (1)";
    desktop.time.run();
    EXPECT_EQ(changes, 2);
    desktop.loginItem.state = LoginItemStatus::enabled;
    form->onAppear();
    desktop.time.run();
    EXPECT_EQ(changes, 3);
    viewLog().action();
    desktop.time.run();
    EXPECT_EQ(changes, 4);
}

TEST_F(SettingsViewTest, AFormThatIsGoneIsToldOfNoChange)
{
    int changes = 0;
    auto handle = form->onChange([&changes] { ++changes; });
    handle.reset();
    desktop.defaults.setBool("announcementsEnabled", false);
    desktop.time.run();
    log->log("entry", DJLog::Level::info);
    logTitle = "View log (1)";
    desktop.time.run();
    viewLog().action();
    form->onAppear();
    desktop.time.run();
    EXPECT_EQ(changes, 0);
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
