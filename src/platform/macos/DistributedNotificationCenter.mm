#include "platform/macos/DistributedNotificationCenter.h"

#include "platform/macos/DispatchTask.h"
#import "platform/macos/ObjcPtr.h"
#import "platform/macos/Strings.h"

#include <atomic>
#include <cstring>
#include <memory>
#include <utility>

namespace sonvara {

namespace {

using Observer = std::function<void(const Notification&)>;

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

}  // namespace

}  // namespace sonvara

@interface SNVNotificationObserver : NSObject {
    sonvara::Observer observer_;
    std::atomic<bool> live_;
}
- (instancetype)initWithObserver:(sonvara::Observer)observer;
- (void)received:(NSNotification*)notification;
- (void)end;
@end

@implementation SNVNotificationObserver

- (instancetype)initWithObserver:(sonvara::Observer)observer
{
    self = [super init];
    if (self != nil) {
        observer_ = std::move(observer);
        live_ = true;
    }
    return self;
}

- (void)received:(NSNotification*)notification
{
    if (live_) observer_(sonvara::toNotification(notification));
}

- (void)end
{
    live_ = false;
}

@end

namespace sonvara {

Subscription DistributedNotificationCenter::addObserver(const std::string& name, Observer observer)
{
    const auto receiver = ObjcPtr<SNVNotificationObserver>::adopt(
        [[SNVNotificationObserver alloc] initWithObserver:std::move(observer)]);
    [[NSDistributedNotificationCenter defaultCenter] addObserver:receiver.get()
                                                        selector:@selector(received:)
                                                            name:toNSString(name)
                                                          object:nil];
    // The centre holds its observers weakly, so this holds it until the main thread has removed it there.
    return Subscription([receiver] {
        [receiver.get() end];
        postToMainThread(
            [receiver] { [[NSDistributedNotificationCenter defaultCenter] removeObserver:receiver.get()]; });
    });
}

}  // namespace sonvara
