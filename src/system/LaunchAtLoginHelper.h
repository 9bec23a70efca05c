// Whether the application starts when the user logs in.
#pragma once

#include "support/Observable.h"

#include <string>

namespace sonvara {

class LoginItem;

/// Shows and changes the system's registration of the application, which is the only record of it.
/// Main thread.
class LaunchAtLoginHelper {
public:
    /// Shows the current status at once.
    explicit LaunchAtLoginHelper(LoginItem& loginItem);

    /// What the system knows the application by. For reference: nothing here reads it.
    static constexpr const char* bundleIdentifier = SONVARA_IDENTIFIER;

    Observable<bool> isEnabled;

    /// Reads the status from the system again.
    void checkStatus();

    /// Registers or unregisters the application. On success the switch turns over without a second look at
    /// the system, on failure it stays and one line goes to standard output.
    void toggle();

private:
    LoginItem& loginItem_;
};

}  // namespace sonvara
