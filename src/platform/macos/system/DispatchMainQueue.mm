#include "platform/macos/system/DispatchMainQueue.h"

#include "platform/macos/system/DispatchTask.h"
#import "platform/macos/system/ObjcPtr.h"

#import <AppKit/AppKit.h>

#include <utility>

/// What a timer calls; the run loop keeps the timer, and the timer keeps this.
@interface SNVTimerTarget : NSObject {
    std::shared_ptr<sonvara::Task> action_;
}
- (instancetype)initWithAction:(sonvara::Task)action;
- (void)tick:(id)sender;
- (void)dropAction;
@end

@implementation SNVTimerTarget

- (instancetype)initWithAction:(sonvara::Task)action
{
    self = [super init];
    if (self != nil) action_ = std::make_shared<sonvara::Task>(std::move(action));
    return self;
}

- (void)tick:(id)sender
{
    (void)sender;
    const auto action = action_;  // survives an action that invalidates its own timer
    if (action != nullptr) (*action)();
}

- (void)dropAction
{
    action_ = nullptr;
}

@end

namespace sonvara {

namespace {

class RunLoopTimer final : public RepeatingTimer {
public:
    RunLoopTimer(std::chrono::milliseconds interval, Task action)
        : target_(ObjcPtr<SNVTimerTarget>::adopt([[SNVTimerTarget alloc] initWithAction:std::move(action)])),
          timer_(ObjcPtr<NSTimer>::share([NSTimer
              scheduledTimerWithTimeInterval:std::chrono::duration<double>(interval).count()
                                      target:target_.get()
                                    selector:@selector(tick:)
                                    userInfo:nil
                                     repeats:YES]))
    {
        // The time asleep does not count for a timer, and what it looks after may have changed meanwhile.
        [wakeUps() addObserver:target_.get()
                      selector:@selector(tick:)
                          name:NSWorkspaceDidWakeNotification
                        object:nil];
    }

    void invalidate() override
    {
        [wakeUps() removeObserver:target_.get()];
        [timer_.get() invalidate];
        [target_.get() dropAction];
    }

private:
    static NSNotificationCenter* wakeUps() { return [[NSWorkspace sharedWorkspace] notificationCenter]; }

    ObjcPtr<SNVTimerTarget> target_;
    ObjcPtr<NSTimer> timer_;
};

}  // namespace

void DispatchMainQueue::post(Task task)
{
    postToMainThread(std::move(task));
}

std::shared_ptr<RepeatingTimer> DispatchMainQueue::scheduleTimer(std::chrono::milliseconds interval,
                                                                 Task action)
{
    return std::make_shared<RunLoopTimer>(interval, std::move(action));
}

}  // namespace sonvara
