#include "platform/macos/system/LocaleDigits.h"

#include "platform/macos/system/ObjcPtr.h"
#import "platform/macos/system/Strings.h"

namespace sonvara {

std::string zeroDigit()
{
    @autoreleasepool {
        // Its style is none, unless it is told another.
        const auto formatter = ObjcPtr<NSNumberFormatter>::adopt([[NSNumberFormatter alloc] init]);
        return toString([formatter.get() stringFromNumber:@0]);
    }
}

}  // namespace sonvara
