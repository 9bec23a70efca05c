// Target and action of controls and menu items as C++ closures. For Objective-C++ sources only.
#pragma once

#import "platform/macos/system/ObjcPtr.h"

#import <AppKit/AppKit.h>

#include <functional>

/// Runs a closure when its control or menu item sends its action.
@interface SNVActionTarget : NSObject {
    std::function<void()> action_;
}
- (instancetype)initWithAction:(std::function<void()>)action;
- (void)perform:(id)sender;
@end

namespace sonvara {

/// Connects a control with a closure for the life of this object. The closure may destroy this object.
class ControlAction {
public:
    ControlAction(NSControl* control, std::function<void()> action);
    ControlAction(const ControlAction&) = delete;
    ControlAction& operator=(const ControlAction&) = delete;
    ~ControlAction();

private:
    ObjcPtr<NSControl> control_;
    ObjcPtr<SNVActionTarget> target_;  // the control holds it weakly
};

}  // namespace sonvara
