#import "platform/macos/players/NotificationValues.h"

#import "platform/macos/system/Strings.h"

#include <cstring>

namespace sonvara {

namespace {

/// A truth value has a number class of its own; a number that happens to be 0 or 1 is none.
bool isBoolean(NSNumber* number)
{
    NSNumber* truth = [NSNumber numberWithBool:YES];
    return [number isKindOfClass:[truth class]];
}

Variant toVariant(id value)
{
    if ([value isKindOfClass:[NSString class]]) return toString(value);
    if (![value isKindOfClass:[NSNumber class]]) return std::monostate();
    NSNumber* number = value;
    if (isBoolean(number)) return static_cast<bool>([number boolValue]);
    if (std::strchr("fd", *[number objCType]) != nullptr) return [number doubleValue];
    return static_cast<std::int64_t>([number longLongValue]);
}

}  // namespace

Notification toNotification(NSNotification* notification)
{
    Notification result{toString([notification name]), std::nullopt};
    NSDictionary* userInfo = [notification userInfo];
    if (userInfo == nil) return result;
    result.userInfo.emplace();
    for (id key in userInfo) {
        if ([key isKindOfClass:[NSString class]]) {
            result.userInfo->emplace(toString(key), toVariant([userInfo objectForKey:key]));
        }
    }
    return result;
}

}  // namespace sonvara
