// A form with one control of each kind and a log over it, bound to plain values.
#pragma once

#include "ports/Form.h"
#include "support/Callbacks.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace sonvara::test {

struct SampleForm {
    static constexpr const char* help = "Help with <b>no</b> markup, which is so long that it does not fit "
                                        "on one line of this form and wraps.";

    bool isOn = true;
    bool isStubborn = false;  ///< shown by a toggle whose setter does nothing
    std::string choice = "b";
    bool canChoose = true;
    bool isSheetShown = false;
    int presses = 0;
    int appearances = 0;
    Callbacks<> changed;
    Callbacks<> logChanged;
    std::vector<LogRow> rows;
    int copies = 0;

    static LogRow row(const std::string& id, const std::string& message)
    {
        LogRow row;
        row.id = id;
        row.time = {"21:05:09", FontRole::captionMonospaced, ColorRole::secondaryLabel};
        row.symbol = {"info.circle", ""};
        row.symbolColor = ColorRole::secondaryLabel;
        row.message = {message, FontRole::caption, ColorRole::label};
        return row;
    }

    void showSheet(bool shown)
    {
        isSheetShown = shown;
        changed.call();
    }

    LogSheet sheet()
    {
        LogSheet sheet;
        sheet.width = 520;
        sheet.height = 420;
        sheet.title = {"Log", FontRole::headline, ColorRole::label};
        sheet.buttons = {{[] { return "Copy"; }, [this] { return !rows.empty(); }, [this] { ++copies; }},
                         {[] { return "Done"; }, [] { return true; }, [this] { showSheet(false); }}};
        sheet.emptyText = {"Nothing yet.", FontRole::body, ColorRole::secondaryLabel};
        sheet.rowSpacing = 4;
        sheet.columnSpacing = 8;
        sheet.rows = [this] { return rows; };
        sheet.onChange = [this](std::function<void()> call) { return logChanged.add(std::move(call)); };
        return sheet;
    }

    std::shared_ptr<const Form> form()
    {
        auto form = std::make_shared<Form>();
        form->width = 420;
        form->height = 420;
        const Picker picker{"Engine",
                            {{"First", "a"}, {"Second", "b"}},
                            {[this] { return choice; }, [this](const std::string& tag) { choice = tag; }},
                            [this] { return canChoose; }};
        const PushButton button{[this] { return "View log (" + std::to_string(presses) + ")"; },
                                [] { return true; },
                                [this] {
                                    ++presses;
                                    showSheet(true);
                                }};
        form->sections = {
            {"One & only",
             {Toggle{"Switch R&D on", {[this] { return isOn; }, [this](bool on) { isOn = on; }}},
              Toggle{"Stubborn", {[this] { return isStubborn; }, [](bool) {}}},
              StyledText{help, FontRole::caption, ColorRole::secondaryLabel}}},
            {"Two", {picker, button}}};
        form->onAppear = [this] { ++appearances; };
        form->onChange = [this](std::function<void()> call) { return changed.add(std::move(call)); };
        form->isSheetShown = {[this] { return isSheetShown; }, [this](bool shown) { showSheet(shown); }};
        form->sheet = [this] { return sheet(); };
        return form;
    }
};

}  // namespace sonvara::test
