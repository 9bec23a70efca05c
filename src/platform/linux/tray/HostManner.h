// How the desktop's tray host behaves where the protocols leave it a choice.
#pragma once

namespace sonvara {

/// What differs between the hosts and cannot be asked. A value.
struct HostManner {
    bool growsItems = true;           ///< an item of several lines is shown with all of them
    bool opensMenuOnRefusal = false;  ///< a left click that is refused opens the host's own menu
    bool wrapsToolTip = true;         ///< a long line of the tool tip is broken by the host

    /// The manner of the desktop that runs, as its session names it.
    [[nodiscard]] static HostManner ofThisDesktop();
};

/// Whether the session names itself `name`, alone or among others.
[[nodiscard]] bool isDesktop(const char* name);

}  // namespace sonvara
