// The menu bar of an application that never shows one. For Objective-C++ sources only.
#pragma once

#import "platform/macos/system/ObjcPtr.h"

#import <AppKit/AppKit.h>

namespace sonvara {

/// Its items are there for their key equivalents, which the system looks up in the menu bar whether it is seen or
/// not: each goes to the window or text that has the keyboard. Main thread.
[[nodiscard]] ObjcPtr<NSMenu> makeMainMenu();

}  // namespace sonvara
