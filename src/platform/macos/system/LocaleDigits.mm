#include "platform/macos/system/LocaleDigits.h"

#import "platform/macos/system/Strings.h"

namespace sonvara {

std::string zeroDigit()
{
    @autoreleasepool {
        return toString([NSNumberFormatter localizedStringFromNumber:@0
                                                         numberStyle:NSNumberFormatterNoStyle]);
    }
}

}  // namespace sonvara
