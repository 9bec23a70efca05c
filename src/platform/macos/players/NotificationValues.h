// A notification of the system as the port's. Any thread. For Objective-C++ sources only.
#pragma once

#include "ports/NotificationCenter.h"

#import <Foundation/Foundation.h>

namespace sonvara {

/// Leaves out the entries of the dictionary whose keys are no strings.
[[nodiscard]] Notification toNotification(NSNotification* notification);

}  // namespace sonvara
