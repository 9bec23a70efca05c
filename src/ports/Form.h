// What a settings form and a log sheet hold, as plain data with bindings. A renderer draws any such
// value and keeps what it shows equal to the bindings.
#pragma once

#include "ports/Style.h"
#include "support/Subscription.h"

#include <functional>
#include <string>
#include <variant>
#include <vector>

namespace sonvara {

/// A value that a control shows and changes. Both functions are for the main thread.
template <typename T>
struct Binding {
    std::function<T()> get;
    std::function<void(T)> set;
};

/// A switch with a label.
struct Toggle {
    std::string title;
    Binding<bool> isOn;
};

/// A choice of one among several options. A selection that is no option's tag shows none.
struct Picker {
    struct Option {
        std::string label;
        std::string tag;
    };
    std::string title;
    std::vector<Option> options;
    Binding<std::string> selection;
    std::function<bool()> isEnabled;
};

struct PushButton {
    std::function<std::string()> title;
    std::function<bool()> isEnabled;
    std::function<void()> action;
};

using FormRow = std::variant<Toggle, Picker, PushButton, StyledText>;

struct FormSection {
    std::string header;
    std::vector<FormRow> rows;
};

/// One row of a log: time and symbol at the top, the message wrapping beside them.
struct LogRow {
    std::string id;  ///< the same for the same row at every call
    StyledText time;
    Symbol symbol;
    ColorRole symbolColor = ColorRole::label;
    FontRole symbolFont = FontRole::caption;
    StyledText message;  ///< its text can be selected
};

/// A log over a header with buttons. Sizes and spacings in points.
struct LogSheet {
    double width = 0;
    double height = 0;
    StyledText title;
    std::vector<PushButton> buttons;  ///< at the trailing end of the header, in order
    StyledText emptyText;             ///< centred in place of the rows when there are none
    double rowSpacing = 0;            ///< between two rows
    double columnSpacing = 0;         ///< between the parts of a row
    std::function<std::vector<LogRow>()> rows;
    /// Calls back on the main thread when rows or buttons may have changed.
    std::function<Subscription(std::function<void()>)> onChange;
};

/// A grouped form of a fixed size, in points. The functions are for the main thread and may be called
/// as long as the form exists.
struct Form {
    double width = 0;
    double height = 0;
    std::vector<FormSection> sections;
    std::function<void()> onAppear;  ///< to be called each time the form comes on screen
    /// Calls back on the main thread when any binding, title or enabled state may have changed.
    std::function<Subscription(std::function<void()>)> onChange;
    Binding<bool> isSheetShown;       ///< whether the sheet lies over the form
    std::function<LogSheet()> sheet;  ///< its content, made anew each time it is shown
};

}  // namespace sonvara
