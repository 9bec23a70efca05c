// The application's permanent face: the item in the status bar, its icon and its menu.
#pragma once

#include "ports/StatusBar.h"
#include "ports/SystemLog.h"
#include "ports/Windows.h"
#include "support/Subscription.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace sonvara {

class MusicMonitor;
struct Platform;
class SpeechManager;

/// Owns the status item and opens the settings window. The menu is rebuilt whenever something it shows
/// may have changed, and when it opens. Main thread, but for the two operations that say otherwise.
class StatusBarController final : public WindowDelegate,
                                  public std::enable_shared_from_this<StatusBarController> {
public:
    /// Puts the item into the status bar and starts to render its icons.
    [[nodiscard]] static std::shared_ptr<StatusBarController>
    create(Platform& platform, std::shared_ptr<MusicMonitor> monitor, std::shared_ptr<SpeechManager> speech);

    StatusBarController() = delete;
    ~StatusBarController() override;

    /// Any thread: rebuilds the menu soon.
    void refreshMenu();
    /// Any thread: shows the icon for the playing state soon.
    void updateIcon(bool isPlaying);

    /// The menu is about to open: it shows the state of this moment.
    void menuWillOpen();
    /// Switches announcements on or off. A line that is being spoken goes on.
    void toggleMute();
    /// Brings the settings window to the front, or makes a new one when none can be seen.
    void openSettings();
    void quitApp();

    void windowWillClose(Window& window) override;

    /// Any thread: breaks `line` at blanks (U+0020) into lines of at most `width` user-perceived characters,
    /// joined by line feeds. Runs of blanks count as one break, leading and trailing ones vanish. A longer word
    /// stands alone on its line, unbroken.
    [[nodiscard]] static std::string wrap(std::string_view line, std::size_t width);

private:
    StatusBarController(Platform& platform, std::shared_ptr<MusicMonitor> monitor,
                        std::shared_ptr<SpeechManager> speech);
    void configureStatusItem();
    /// The setting, read afresh at each use.
    [[nodiscard]] bool announcementsEnabled() const;
    /// Worker threads: the icon for either state; null when it cannot be drawn.
    [[nodiscard]] std::shared_ptr<const Image> createCustomIcon(bool isPlaying) const;
    void renderIcons();
    void cacheIcons(std::shared_ptr<const Image> notPlaying, std::shared_ptr<const Image> playing);
    void showIcon(bool isPlaying);
    void setupMenu();
    void bringToFront(Window& window);
    [[nodiscard]] std::vector<MenuItem> menuItems();
    [[nodiscard]] MenuItem actionItem(const char* title, void (StatusBarController::*action)());

    Platform& platform_;
    std::unique_ptr<StatusMenu> menu_;  // before the item, which must not outlive it
    std::unique_ptr<StatusItem> statusItem_;
    StatusButton* statusButton_ = nullptr;  ///< the item's button; null when the system gave none
    std::shared_ptr<MusicMonitor> musicMonitor_;
    std::shared_ptr<SpeechManager> speechManager_;  // never called: whoever holds the face holds the DJ, too
    std::shared_ptr<const Image> cachedPlayingIcon_;
    std::shared_ptr<const Image> cachedNotPlayingIcon_;
    std::shared_ptr<Window> settingsWindow_;
    Logger logger_;
    Subscription menuWillOpen_;
};

}  // namespace sonvara
