#include "platform/macos/players/DistributedNotificationCenter.h"

#import "platform/macos/players/NotificationValues.h"
#include "platform/macos/system/DispatchTask.h"
#import "platform/macos/system/ObjcPtr.h"
#import "platform/macos/system/Strings.h"

#include <atomic>
#include <utility>

namespace sonvara {

namespace {

using Observer = std::function<void(const Notification&)>;

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
