// Views placed by fixed frames from top to bottom. Main thread only; sizes in points.
// For Objective-C++ sources only.
#pragma once

#import "platform/macos/system/ObjcPtr.h"
#include "ports/Form.h"

#import <AppKit/AppKit.h>

/// A view whose origin is its upper left corner.
@interface SNVFlippedView : NSView
@end

namespace sonvara {

/// A text as a view that takes no input. It wraps at the width that it is given.
[[nodiscard]] ObjcPtr<NSTextField> makeLabel(const StyledText& text);

/// How high `text` is when it wraps at `width`, rounded up to whole points.
[[nodiscard]] double wrappedHeight(const StyledText& text, double width);

/// How wide `text` is on one line, rounded up to whole points.
[[nodiscard]] double lineWidth(const StyledText& text);

/// An area that shows `content`, without a scroller so far.
[[nodiscard]] ObjcPtr<NSScrollView> makeScrollView(NSView* content, NSRect frame);

/// A push button in the system's usual look.
[[nodiscard]] ObjcPtr<NSButton> makePushButton();

/// Shows the title and the enabled state that `content` has now.
void showPushButton(NSButton* button, const PushButton& content);

/// How wide a push button has to be for its title.
[[nodiscard]] double pushButtonWidth(NSButton* button);

}  // namespace sonvara
