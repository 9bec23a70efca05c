#include "platform/macos/system/ServiceLoginItem.h"

#import "platform/macos/system/Strings.h"

#import <ServiceManagement/ServiceManagement.h>

namespace sonvara {

namespace {

std::optional<std::string> failure(BOOL succeeded, NSError* error)
{
    if (succeeded) return std::nullopt;
    return toString([error description]);
}

}  // namespace

LoginItemStatus ServiceLoginItem::status() const
{
    switch ([[SMAppService mainAppService] status]) {
    case SMAppServiceStatusEnabled: return LoginItemStatus::enabled;
    case SMAppServiceStatusRequiresApproval: return LoginItemStatus::requiresApproval;
    case SMAppServiceStatusNotRegistered: return LoginItemStatus::notRegistered;
    case SMAppServiceStatusNotFound: break;
    }
    return LoginItemStatus::notFound;
}

std::optional<std::string> ServiceLoginItem::registerItem()
{
    NSError* error = nil;
    const BOOL succeeded = [[SMAppService mainAppService] registerAndReturnError:&error];
    return failure(succeeded, error);
}

std::optional<std::string> ServiceLoginItem::unregisterItem()
{
    NSError* error = nil;
    const BOOL succeeded = [[SMAppService mainAppService] unregisterAndReturnError:&error];
    return failure(succeeded, error);
}

}  // namespace sonvara
