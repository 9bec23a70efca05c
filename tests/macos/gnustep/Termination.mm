// Termination as AppKit has it: an open sheet prevents it, unless the sheet says otherwise.
#include "StandIns.h"

#import <AppleAdditions.h>
#import <objc/runtime.h>

using sonvara::test::standins::violated;

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
