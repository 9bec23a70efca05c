#include "system/LaunchAtLoginHelper.h"

#include "ports/LoginItem.h"

#include <cstdio>

namespace sonvara {

LaunchAtLoginHelper::LaunchAtLoginHelper(LoginItem& loginItem) : loginItem_(loginItem)
{
    checkStatus();
}

void LaunchAtLoginHelper::checkStatus()
{
    isEnabled.set(loginItem_.status() == LoginItemStatus::enabled);
}

void LaunchAtLoginHelper::toggle()
{
    const auto error = isEnabled.get() ? loginItem_.unregisterItem() : loginItem_.registerItem();
    if (error) {
        std::puts(("Failed to toggle launch at login: " + *error).c_str());
        std::fflush(stdout);
        return;
    }
    isEnabled.set(!isEnabled.get());
}

}  // namespace sonvara
