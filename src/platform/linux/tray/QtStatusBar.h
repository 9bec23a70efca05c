// The desktop's tray as a status bar.
#pragma once

#include "platform/linux/tray/PanelColors.h"
#include "platform/linux/tray/TrayHostWatcher.h"
#include "ports/StatusBar.h"

#include <functional>
#include <optional>
#include <utility>

namespace sonvara {

/// Main thread; to be made after the application object. Looks for a tray from the first item on. Without a
/// session bus only the older kind of tray is served.
class QtStatusBar final : public StatusBar {
public:
    /// `trayMissing` is called once, on the main thread, when the desktop has had its time to bring up a
    /// tray and there is none: the user needs another way to reach the application then.
    explicit QtStatusBar(std::function<void()> trayMissing,
                         std::chrono::milliseconds wait = TrayHostWatcher::patience)
        : trayMissing_(std::move(trayMissing)),
          wait_(wait)
    {}

    [[nodiscard]] std::unique_ptr<StatusItem> makeSquareItem() override;
    [[nodiscard]] std::unique_ptr<StatusMenu> makeMenu() override;

    /// Whether the desktop has a tray at the moment.
    [[nodiscard]] bool trayAvailable() const { return surroundings_ && surroundings_->host.hasHost(); }

private:
    struct Surroundings {
        explicit Surroundings(std::chrono::milliseconds wait) : host(wait) {}
        TrayHostWatcher host;
        PanelColors colors;
    };

    std::function<void()> trayMissing_;
    std::chrono::milliseconds wait_;
    std::optional<Surroundings> surroundings_;
};

}  // namespace sonvara
