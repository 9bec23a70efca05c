// The fonts and colours of the interface by role; a renderer maps them to the platform's own.
#pragma once

#include <string>

namespace sonvara {

enum class FontRole {
    body,               ///< the default of the control
    headline,           ///< emphasised, for a view's title
    caption,            ///< small, for help texts and log rows
    captionMonospaced,  ///< caption with digits of one width
    smallMenu,          ///< the menu's font at the system's small size
};

enum class ColorRole {
    label,           ///< the usual text colour of the surroundings
    secondaryLabel,  ///< less prominent text
    systemGreen,
    systemOrange,
};

/// A text with its appearance. Line feeds in the text are line breaks.
struct StyledText {
    std::string text;
    FontRole font = FontRole::body;
    ColorRole color = ColorRole::label;

    friend bool operator==(const StyledText&, const StyledText&) = default;
};

/// A picture from the system's own set, by its symbol name.
struct Symbol {
    std::string name;
    std::string accessibilityDescription;  ///< empty: none

    friend bool operator==(const Symbol&, const Symbol&) = default;
};

}  // namespace sonvara
