#import "platform/macos/windows/ActionTarget.h"

#include <utility>

@implementation SNVActionTarget

- (instancetype)initWithAction:(std::function<void()>)action
{
    self = [super init];
    if (self != nil) action_ = std::move(action);
    return self;
}

- (void)perform:(id)sender
{
    (void)sender;
    const auto action = action_;  // survives an action that releases this object
    action();
}

@end

namespace sonvara {

ControlAction::ControlAction(NSControl* control, std::function<void()> action)
    : control_(ObjcPtr<NSControl>::share(control)),
      target_(ObjcPtr<SNVActionTarget>::adopt([[SNVActionTarget alloc] initWithAction:std::move(action)]))
{
    [control setTarget:target_.get()];
    [control setAction:@selector(perform:)];
}

ControlAction::~ControlAction()
{
    [control_.get() setTarget:nil];
}

}  // namespace sonvara
