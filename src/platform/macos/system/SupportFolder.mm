#include "platform/macos/system/SupportFolder.h"

#import "platform/macos/system/Strings.h"

namespace sonvara {

std::string supportFile(const std::string& name)
{
    @autoreleasepool {
        NSArray* folders =
            NSSearchPathForDirectoriesInDomains(NSApplicationSupportDirectory, NSUserDomainMask, YES);
        NSString* folder = [folders objectAtIndex:0];  // the user domain has one
        return toString(folder) + "/" SONVARA_IDENTIFIER "/" + name;
    }
}

}  // namespace sonvara
