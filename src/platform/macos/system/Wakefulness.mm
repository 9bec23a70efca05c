#include "platform/macos/system/Wakefulness.h"

#import "platform/macos/system/ObjcPtr.h"

namespace sonvara {

struct Wakefulness::Impl {
    ObjcPtr<NSObject> activity;  // none while it is not held
};

Wakefulness::Wakefulness() : impl_(std::make_unique<Impl>()) {}

Wakefulness::~Wakefulness()
{
    hold(false);
}

void Wakefulness::hold(bool isNeeded)
{
    if (isNeeded == static_cast<bool>(impl_->activity)) return;
    @autoreleasepool {
        NSProcessInfo* process = [NSProcessInfo processInfo];
        if (isNeeded) {
            id activity = [process beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                                                     reason:@"Announcing the tracks that are played"];
            impl_->activity = ObjcPtr<NSObject>::share(activity);
        } else {
            [process endActivity:impl_->activity.get()];
            impl_->activity = {};
        }
    }
}

}  // namespace sonvara
