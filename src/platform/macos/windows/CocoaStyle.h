// The system's fonts and colours for the roles: colours on any thread, the rest on the main thread.
// For Objective-C++ sources only.
#pragma once

#include "ports/Style.h"

#import <AppKit/AppKit.h>

namespace sonvara {

[[nodiscard]] NSFont* fontFor(FontRole role);
[[nodiscard]] NSColor* colorFor(ColorRole role);

/// An autoreleased text in its font and colour.
[[nodiscard]] NSAttributedString* attributed(const StyledText& text);

/// An autoreleased picture, or nil when the system has no such symbol.
[[nodiscard]] NSImage* imageFor(const Symbol& symbol);

}  // namespace sonvara
