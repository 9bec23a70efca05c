// post_notification NAME [KEY=VALUE...]  Posts a distributed notification, as a player does. A value is a
// truth value (true, false), a number, or else a string. Without any pair there is no user info.
#import "platform/macos/system/Strings.h"

#include <cstdlib>

using sonvara::toNSString;

namespace {

id toValue(const std::string& text)
{
    if (text == "true" || text == "false") return [NSNumber numberWithBool:(text == "true" ? YES : NO)];
    char* end = nullptr;
    const double number = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0') return toNSString(text);
    if (text.find('.') != std::string::npos) return [NSNumber numberWithDouble:number];
    return [NSNumber numberWithLongLong:static_cast<long long>(number)];
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc < 2) return EXIT_FAILURE;
    @autoreleasepool {
        NSMutableDictionary* userInfo = argc > 2 ? [NSMutableDictionary dictionary] : nil;
        for (int i = 2; i < argc; ++i) {
            const std::string pair = argv[i];
            const std::size_t equals = pair.find('=');
            if (equals == std::string::npos) return EXIT_FAILURE;
            [userInfo setObject:toValue(pair.substr(equals + 1)) forKey:toNSString(pair.substr(0, equals))];
        }
        [[NSDistributedNotificationCenter defaultCenter] postNotificationName:toNSString(argv[1])
                                                                       object:nil
                                                                     userInfo:userInfo
                                                           deliverImmediately:YES];
    }
    return EXIT_SUCCESS;
}
