#include "platform/macos/system/CocoaUserDefaults.h"

#include "platform/macos/system/DispatchTask.h"
#import "platform/macos/system/ObjcPtr.h"
#import "platform/macos/system/Strings.h"
#include "support/Callbacks.h"

#include <atomic>
#include <mutex>
#include <set>
#include <utility>

namespace sonvara {

namespace {

/// Folds the notices that come on any thread into one call on the main thread. A change may be
/// noticed twice, once as a change of the store and once as one of a key.
class ChangeNotice final : public std::enable_shared_from_this<ChangeNotice> {
public:
    void changed()
    {
        if (pending_.exchange(true)) return;
        postToMainThread([weak = weak_from_this()] {
            if (const auto self = weak.lock()) self->deliver();
        });
    }

    Callbacks<> callbacks;  // main thread

private:
    void deliver()
    {
        pending_ = false;
        callbacks.call();
    }

    std::atomic<bool> pending_ = false;
};

}  // namespace

}  // namespace sonvara

@interface SNVDefaultsObserver : NSObject {
    std::shared_ptr<sonvara::ChangeNotice> notice_;
}
- (instancetype)initWithNotice:(std::shared_ptr<sonvara::ChangeNotice>)notice;
- (void)defaultsChanged:(NSNotification*)notification;
@end

@implementation SNVDefaultsObserver

- (instancetype)initWithNotice:(std::shared_ptr<sonvara::ChangeNotice>)notice
{
    self = [super init];
    if (self != nil) notice_ = std::move(notice);
    return self;
}

- (void)defaultsChanged:(NSNotification*)notification
{
    (void)notification;
    notice_->changed();
}

- (void)observeValueForKeyPath:(NSString*)keyPath
                      ofObject:(id)object
                        change:(NSDictionary*)change
                       context:(void*)context
{
    (void)keyPath, (void)object, (void)change, (void)context;
    notice_->changed();
}

@end

namespace sonvara {

struct CocoaUserDefaults::Impl {
    std::shared_ptr<ChangeNotice> notice = std::make_shared<ChangeNotice>();
    ObjcPtr<SNVDefaultsObserver> observer =
        ObjcPtr<SNVDefaultsObserver>::adopt([[SNVDefaultsObserver alloc] initWithNotice:notice]);
    ObjcPtr<NSUserDefaults> store = ObjcPtr<NSUserDefaults>::share([NSUserDefaults standardUserDefaults]);
    std::mutex mutex;
    std::set<std::string> watched;  // under the mutex

    /// `key` for the store, watched from now on.
    NSString* use(const std::string& key)
    {
        NSString* name = toNSString(key);
        const std::lock_guard lock(mutex);
        if (watched.insert(key).second) {
            [store.get() addObserver:observer.get() forKeyPath:name options:0 context:nullptr];
        }
        return name;
    }
};

CocoaUserDefaults::CocoaUserDefaults() : impl_(std::make_unique<Impl>())
{
    [[NSNotificationCenter defaultCenter] addObserver:impl_->observer.get()
                                             selector:@selector(defaultsChanged:)
                                                 name:NSUserDefaultsDidChangeNotification
                                               object:impl_->store.get()];
}

CocoaUserDefaults::~CocoaUserDefaults()
{
    [[NSNotificationCenter defaultCenter] removeObserver:impl_->observer.get()];
    for (const std::string& key : impl_->watched) {
        [impl_->store.get() removeObserver:impl_->observer.get() forKeyPath:toNSString(key)];
    }
}

bool CocoaUserDefaults::hasObject(const std::string& key) const
{
    return [impl_->store.get() objectForKey:impl_->use(key)] != nil;
}

bool CocoaUserDefaults::boolForKey(const std::string& key) const
{
    return [impl_->store.get() boolForKey:impl_->use(key)];
}

std::optional<std::string> CocoaUserDefaults::stringForKey(const std::string& key) const
{
    NSString* value = [impl_->store.get() stringForKey:impl_->use(key)];
    if (value == nil) return std::nullopt;
    return toString(value);
}

void CocoaUserDefaults::setBool(const std::string& key, bool value)
{
    [impl_->store.get() setBool:(value ? YES : NO) forKey:impl_->use(key)];
}

void CocoaUserDefaults::setString(const std::string& key, const std::string& value)
{
    [impl_->store.get() setObject:toNSString(value) forKey:impl_->use(key)];
}

void CocoaUserDefaults::synchronize()
{
    [impl_->store.get() synchronize];
}

Subscription CocoaUserDefaults::onChange(std::function<void()> changed)
{
    return impl_->notice->callbacks.add(std::move(changed));
}

}  // namespace sonvara
