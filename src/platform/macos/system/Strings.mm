#import "platform/macos/system/Strings.h"

namespace sonvara {

NSString* toNSString(const std::string& text)
{
    const auto make = [&text](NSStringEncoding encoding) {
        return [[[NSString alloc] initWithBytes:text.data() length:text.size()
                                       encoding:encoding] autorelease];
    };
    NSString* decoded = make(NSUTF8StringEncoding);
    return decoded != nil ? decoded : make(NSISOLatin1StringEncoding);
}

std::string toString(NSString* text)
{
    NSData* bytes = [text dataUsingEncoding:NSUTF8StringEncoding allowLossyConversion:YES];
    if (bytes == nil) return {};
    return {static_cast<const char*>([bytes bytes]), [bytes length]};
}

}  // namespace sonvara
