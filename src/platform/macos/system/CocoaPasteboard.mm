#include "platform/macos/system/CocoaPasteboard.h"

#import "platform/macos/system/Strings.h"

#import <AppKit/AppKit.h>

namespace sonvara {

void CocoaPasteboard::clearContents()
{
    [[NSPasteboard generalPasteboard] clearContents];
}

void CocoaPasteboard::setString(const std::string& text)
{
    [[NSPasteboard generalPasteboard] setString:toNSString(text) forType:NSPasteboardTypeString];
}

}  // namespace sonvara
