// A window with a form and a sheet, and what their bindings read and write.
#pragma once

#include "Probe.h"
#include "platform/macos/windows/CocoaWindows.h"
#include "support/Callbacks.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace sonvara::test {

inline constexpr const char* title = "A form";
inline constexpr const char* sheetPlace = "A form/sheet";
inline constexpr const char* help =
    "A rather long help text that does not fit on one line of this form and wraps.";

using probe::ButtonState;
using Texts = std::vector<std::string>;

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

struct Closed final : WindowDelegate {
    std::shared_ptr<Window> window;  // dropped when it closes
    int times = 0;
    void windowWillClose(Window& closing) override
    {
        EXPECT_EQ(&closing, window.get());
        ++times;
        window = nullptr;
    }
};

[[nodiscard]] inline LogRow row(int number, const std::string& message)
{
    LogRow row;
    row.id = std::to_string(number);
    row.time = {"09:05:07", FontRole::captionMonospaced, ColorRole::secondaryLabel};
    row.symbol = {"info.circle", ""};
    row.symbolColor = ColorRole::secondaryLabel;
    row.message = {message, FontRole::caption, ColorRole::label};
    return row;
}

class FormFixture : public testing::Test {
protected:
    FormFixture() { show(); }

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

}  // namespace sonvara::test
