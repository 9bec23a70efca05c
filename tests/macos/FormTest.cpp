// A window with a form and a sheet: the renderer shows what it is given.
#include "Probe.h"
#include "platform/macos/CocoaWindows.h"
#include "support/Callbacks.h"

#include <gtest/gtest.h>
#include <map>

namespace sonvara {
namespace {

constexpr const char* title = "A form";
constexpr const char* sheetPlace = "A form/sheet";
constexpr const char* help = "A rather long help text that does not fit on one line of this form and wraps.";

/// What a form's bindings read and write.
struct Model {
    std::map<std::string, bool> flags;
    std::string choice = "b";
    std::string buttonTitle = "Show (0)";
    bool isPickerEnabled = true;
    bool isSheetShown = false;
    bool refuses = false;
    int appeared = 0;
    std::vector<LogRow> rows;
    std::vector<std::string> pressed;
    Callbacks<> changed;

    Toggle toggle(const std::string& name)
    {
        return {name,
                {[this, name] { return flags[name]; },
                 [this, name](bool on) {
                     if (!refuses) flags[name] = on;
                 }}};
    }

    PushButton headerButton(const std::string& name)
    {
        return {[name] { return name; }, [this] { return !rows.empty(); },
                [this, name] { pressed.push_back(name); }};
    }

    LogSheet sheet()
    {
        LogSheet sheet;
        sheet.width = 520;
        sheet.height = 420;
        sheet.title = {"The log", FontRole::headline, ColorRole::label};
        sheet.buttons = {headerButton("First"), headerButton("Last")};
        sheet.emptyText = {"Nothing yet.", FontRole::body, ColorRole::secondaryLabel};
        sheet.rowSpacing = 4;
        sheet.columnSpacing = 8;
        sheet.rows = [this] { return rows; };
        sheet.onChange = [this](std::function<void()> callback) { return changed.add(std::move(callback)); };
        return sheet;
    }

    std::shared_ptr<const Form> form()
    {
        Picker picker{"Engine",
                      {{"Option A", "a"}, {"Option B", "b"}},
                      {[this] { return choice; }, [this](std::string tag) { choice = std::move(tag); }},
                      [this] { return isPickerEnabled; }};
        PushButton button{[this] { return buttonTitle; }, [] { return true; },
                          [this] { pressed.push_back("row"); }};
        auto form = std::make_shared<Form>();
        form->width = 420;
        form->height = 420;
        form->sections = {
            {"One", {toggle("Flip"), StyledText{help, FontRole::caption, ColorRole::secondaryLabel}}},
            {"Two", {toggle("Flop"), picker, button}}};
        form->onAppear = [this] { ++appeared; };
        form->onChange = [this](std::function<void()> callback) { return changed.add(std::move(callback)); };
        form->isSheetShown = {[this] { return isSheetShown; },
                              [this](bool shown) {
                                  isSheetShown = shown;
                                  changed.call();
                              }};
        form->sheet = [this] { return sheet(); };
        return form;
    }
};

struct Closed : WindowDelegate {
    std::shared_ptr<Window> window;  // dropped when it closes
    int times = 0;
    void windowWillClose(Window& closing) override
    {
        EXPECT_EQ(&closing, window.get());
        ++times;
        window = nullptr;
    }
};

LogRow row(int number, const std::string& message)
{
    LogRow row;
    row.id = std::to_string(number);
    row.time = {"09:05:07", FontRole::captionMonospaced, ColorRole::secondaryLabel};
    row.symbol = {"info.circle", ""};
    row.symbolColor = ColorRole::secondaryLabel;
    row.message = {message, FontRole::caption, ColorRole::label};
    return row;
}

class FormTest : public testing::Test {
protected:
    FormTest() { show(); }

    void show()
    {
        WindowSetup setup;
        setup.title = title;
        setup.contentWidth = 420;
        setup.contentHeight = 360;
        setup.isClosable = true;
        setup.isMiniaturizable = true;
        setup.isCentered = true;
        setup.content = model_.form();
        content_ = setup.content;
        closed_->window = windows_.make(std::move(setup));
        closed_->window->setDelegate(closed_);
        closed_->window->makeKeyAndOrderFront();
    }

    void showSheet()
    {
        model_.isSheetShown = true;
        model_.changed.call();
        ASSERT_TRUE(probe::isShown(sheetPlace));
    }

    Model model_;
    CocoaWindows windows_;
    std::weak_ptr<const Form> content_;
    std::shared_ptr<Closed> closed_ = std::make_shared<Closed>();
};

using probe::ButtonState;
using Texts = std::vector<std::string>;

TEST_F(FormTest, WindowIsTitledClosableAndMiniaturizableAndAsLargeAsTheForm)
{
    EXPECT_TRUE(closed_->window->isVisible());
    EXPECT_EQ(probe::styleMask(title), 7UL);
    EXPECT_EQ(probe::contentSize(title), (probe::Size{420, 420}));
}

TEST_F(FormTest, ShowsSectionsAndTextsInOrderAndWhole)
{
    EXPECT_EQ(probe::texts(title), (Texts{"One", help, "Two", "Engine"}));
    for (const std::string& text : probe::texts(title)) EXPECT_TRUE(probe::isWhole(title, text)) << text;
}

TEST_F(FormTest, TellsEachTimeItComesOnScreen)
{
    EXPECT_EQ(model_.appeared, 1);
    closed_->window->makeKeyAndOrderFront();
    EXPECT_EQ(model_.appeared, 1) << "it was there";
    probe::miniaturize(title);
    ASSERT_TRUE(probe::runUntil([this] { return !closed_->window->isVisible(); }));
    closed_->window->makeKeyAndOrderFront();
    EXPECT_EQ(model_.appeared, 2);
}

TEST_F(FormTest, TogglesWriteAndFollowTheirBindings)
{
    probe::press(title, "Flip");
    EXPECT_TRUE(model_.flags["Flip"]);
    EXPECT_EQ(probe::button(title, "Flip"), (ButtonState{true, true}));
    EXPECT_EQ(probe::button(title, "Flop"), (ButtonState{true, false}));
    model_.flags["Flop"] = true;
    model_.changed.call();
    EXPECT_EQ(probe::button(title, "Flop"), (ButtonState{true, true}));
}

TEST_F(FormTest, ToggleFallsBackWhenItsBindingRefuses)
{
    model_.refuses = true;
    probe::press(title, "Flip");
    EXPECT_EQ(probe::button(title, "Flip"), (ButtonState{true, false}));
}

TEST_F(FormTest, PickerWritesAndFollowsItsBinding)
{
    EXPECT_EQ(probe::popUp(title).options, (Texts{"Option A", "Option B"}));
    EXPECT_EQ(probe::popUp(title).selected, 1);
    probe::choose(title, 0);
    EXPECT_EQ(model_.choice, "a");
    model_.choice = "unknown";
    model_.isPickerEnabled = false;
    model_.changed.call();
    EXPECT_EQ(probe::popUp(title).selected, -1);
    EXPECT_FALSE(probe::popUp(title).isEnabled);
}

TEST_F(FormTest, ButtonRunsItsActionAndFollowsItsTitle)
{
    probe::press(title, "Show (0)");
    EXPECT_EQ(model_.pressed, (Texts{"row"}));
    model_.buttonTitle = "Show (200)";
    model_.changed.call();
    EXPECT_TRUE(probe::button(title, "Show (200)"));
}

TEST_F(FormTest, ClosingTellsTheDelegateAndLetsTheFormGo)
{
    probe::pressCloseButton(title);
    ASSERT_TRUE(probe::runUntil([this] { return closed_->times == 1; }));
    EXPECT_EQ(probe::countWindows(title), 0);
    EXPECT_TRUE(content_.expired());
}

TEST_F(FormTest, DroppingTheWindowClosesItWithoutTellingTheDelegate)
{
    closed_->window = nullptr;
    EXPECT_EQ(probe::countWindows(title), 0);
    EXPECT_EQ(closed_->times, 0);
    EXPECT_TRUE(content_.expired());
}

TEST_F(FormTest, DroppingTheWindowTakesItsSheetAlong)
{
    showSheet();
    closed_->window = nullptr;
    EXPECT_EQ(probe::countWindows(""), 0);
    EXPECT_TRUE(content_.expired());
}

TEST_F(FormTest, SheetComesAndGoesWithItsBinding)
{
    showSheet();
    EXPECT_EQ(probe::contentSize(sheetPlace), (probe::Size{520, 420}));
    model_.isSheetShown = false;
    model_.changed.call();
    EXPECT_FALSE(probe::isShown(sheetPlace));
    showSheet();
}

TEST_F(FormTest, EscapeDismissesTheSheet)
{
    showSheet();
    probe::pressEscape(sheetPlace);
    EXPECT_FALSE(model_.isSheetShown);
    EXPECT_FALSE(probe::isShown(sheetPlace));
}

TEST_F(FormTest, EmptySheetShowsItsTextAndDisabledButtons)
{
    showSheet();
    EXPECT_EQ(probe::texts(sheetPlace), (Texts{"The log", "Nothing yet."}));
    EXPECT_EQ(probe::button(sheetPlace, "First"), (ButtonState{false, false}));
}

TEST_F(FormTest, SheetShowsRowsAndFollowsThem)
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

TEST_F(FormTest, HeaderButtonsRunTheirActions)
{
    model_.rows = {row(1, "one")};
    showSheet();
    probe::press(sheetPlace, "First");
    probe::press(sheetPlace, "Last");
    EXPECT_EQ(model_.pressed, (Texts{"First", "Last"}));
}

TEST_F(FormTest, RowsAreMadeWhenTheyScrollIntoSight)
{
    for (int i = 0; i < 200; ++i) model_.rows.push_back(row(i, "message " + std::to_string(i)));
    showSheet();
    EXPECT_TRUE(probe::hasText(sheetPlace, "message 0"));
    EXPECT_FALSE(probe::hasText(sheetPlace, "message 199"));
    probe::scrollToEnd(sheetPlace);
    EXPECT_TRUE(probe::hasText(sheetPlace, "message 199"));
    EXPECT_FALSE(probe::hasText(sheetPlace, "message 100"));
}

}  // namespace
}  // namespace sonvara
