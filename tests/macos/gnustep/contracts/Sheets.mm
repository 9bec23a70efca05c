// Sheets, and termination as AppKit has it: an open sheet prevents it, unless the sheet says otherwise.
#include "StandIns.h"

#import <AppleAdditions.h>
#import <objc/runtime.h>

#include <mutex>
#include <set>

using sonvara::test::standins::violated;

namespace {

std::mutex mutex;
std::set<const void*> letsQuit;  // windows that do not keep the application from terminating

}  // namespace

@implementation NSWindow (AppleAdditions)

- (void)setPreventsApplicationTerminationWhenModal:(BOOL)prevents
{
    const std::lock_guard lock(mutex);
    if (prevents) {
        letsQuit.erase(self);
    } else {
        letsQuit.insert(self);
    }
}

- (BOOL)preventsApplicationTerminationWhenModal
{
    const std::lock_guard lock(mutex);
    return letsQuit.contains(self) ? NO : YES;
}

- (void)beginSheet:(NSWindow*)sheet completionHandler:(std::nullptr_t)handler
{
    (void)handler;
    if ([self attachedSheet] != nil) violated("a window has two sheets");
    const NSRect over = [self frame];
    const NSSize size = [sheet frame].size;
    [sheet setFrameOrigin:NSMakePoint(NSMidX(over) - size.width / 2, NSMaxY(over) - 40 - size.height)];
    [self addChildWindow:sheet ordered:NSWindowAbove];
    [sheet makeKeyAndOrderFront:nil];
}

- (void)endSheet:(NSWindow*)sheet
{
    if ([self attachedSheet] != sheet) violated("a sheet ends that did not begin");
    [self removeChildWindow:sheet];
    [sheet orderOut:nil];
}

- (NSWindow*)attachedSheet
{
    return [[self childWindows] lastObject];
}

@end

@interface NSApplication (Termination)
- (void)terminateUnlessModal:(id)sender;
@end

@implementation NSApplication (Termination)

+ (void)load
{
    method_exchangeImplementations(class_getInstanceMethod(self, @selector(terminate:)),
                                   class_getInstanceMethod(self, @selector(terminateUnlessModal:)));
}

// Under the name of `terminate:`.
- (void)terminateUnlessModal:(id)sender
{
    for (NSWindow* window in [self windows]) {
        NSWindow* sheet = [window attachedSheet];
        if (sheet == nil || ![sheet preventsApplicationTerminationWhenModal]) continue;
        violated("the application is to terminate while a sheet prevents it");
        return;
    }
    [self terminateUnlessModal:sender];
}

@end
