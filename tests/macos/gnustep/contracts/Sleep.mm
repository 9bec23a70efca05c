// The system's sleep, and that of programs which seem to do nothing.
#include "StandIns.h"

#import <AppKit/AppKit.h>

#include <atomic>

using sonvara::test::standins::violated;

namespace {

std::atomic<int> activities = 0;

}  // namespace

/// What an activity is known by, alive as long as somebody keeps it.
@interface SNVActivity : NSObject
@end

@implementation SNVActivity
@end

@implementation NSProcessInfo (AppleAdditions)

- (id)beginActivityWithOptions:(NSActivityOptions)options reason:(NSString*)reason
{
    if ([reason length] == 0) violated("an activity has no reason");
    if ((options & NSActivityIdleSystemSleepDisabled) != 0)
        violated("an activity keeps the Mac from sleeping");
    if ((options & NSActivityUserInitiated) == 0)
        violated("an activity does not keep the program from its nap");
    ++activities;
    return [[[SNVActivity alloc] init] autorelease];
}

- (void)endActivity:(id<NSObject>)activity
{
    if (![activity isKindOfClass:[SNVActivity class]]) violated("something ends that is no activity");
    --activities;
}

@end

// GNUstep's own centre sends on to other programs, and delivers when they have it.
@implementation NSWorkspace (Sleep)

- (NSNotificationCenter*)notificationCenter
{
    static NSNotificationCenter* center = [[NSNotificationCenter alloc] init];
    return center;
}

@end

namespace sonvara::test::standins {

bool isKeptAwake()
{
    return activities > 0;
}

void wakeFromSleep()
{
    [[[NSWorkspace sharedWorkspace] notificationCenter] postNotificationName:NSWorkspaceDidWakeNotification
                                                                      object:[NSWorkspace sharedWorkspace]];
}

}  // namespace sonvara::test::standins
