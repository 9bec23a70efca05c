// Service management with one login item.
#include "StandIns.h"

#import <ServiceManagement/ServiceManagement.h>

#include <mutex>
#include <utility>

using namespace sonvara::test::standins;

namespace {

std::mutex mutex;
LoginState current = LoginState::notRegistered;
std::optional<std::string> failure;

BOOL change(LoginState from, LoginState to, NSError** error)
{
    if (![NSThread isMainThread]) violated("the login item is changed off the main thread");
    const std::lock_guard lock(mutex);
    if (failure || current != from) {
        NSString* reason =
            [NSString stringWithUTF8String:failure.value_or("Operation not permitted").c_str()];
        *error = [NSError errorWithDomain:@"SMAppServiceErrorDomain"
                                     code:1
                                 userInfo:@{NSLocalizedDescriptionKey : reason}];
        return NO;
    }
    current = to;
    return YES;
}

}  // namespace

@implementation SMAppService

+ (instancetype)mainAppService
{
    return [[[self alloc] init] autorelease];
}

- (SMAppServiceStatus)status
{
    switch (loginItem()) {
    case LoginState::notRegistered: return SMAppServiceStatusNotRegistered;
    case LoginState::enabled: return SMAppServiceStatusEnabled;
    case LoginState::requiresApproval: return SMAppServiceStatusRequiresApproval;
    case LoginState::notFound: break;
    }
    return SMAppServiceStatusNotFound;
}

- (BOOL)registerAndReturnError:(NSError**)error
{
    return change(LoginState::notRegistered, LoginState::enabled, error);
}

- (BOOL)unregisterAndReturnError:(NSError**)error
{
    return change(LoginState::enabled, LoginState::notRegistered, error);
}

@end

namespace sonvara::test::standins {

void setLoginItem(LoginState state, std::optional<std::string> nextFailure)
{
    const std::lock_guard lock(mutex);
    current = state;
    failure = std::move(nextFailure);
}

LoginState loginItem()
{
    const std::lock_guard lock(mutex);
    return current;
}

}  // namespace sonvara::test::standins
