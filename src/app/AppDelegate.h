// Creates the long-lived objects at launch and connects them.
#pragma once

#include "ports/Application.h"
#include "support/Subscription.h"

#include <memory>
#include <string>
#include <vector>

namespace sonvara {

class Environment;
class MusicMonitor;
struct Platform;
class SpeechManager;
class StatusBarController;

/// The application delegate: owns the monitor, the announcer and the status item, and their wiring.
/// Main thread.
class AppDelegate final : public ApplicationDelegate, public std::enable_shared_from_this<AppDelegate> {
public:
    /// Made through a shared pointer: the wiring holds the delegate weakly.
    explicit AppDelegate(Platform& platform) : platform_(platform) {}

    /// Whether a test harness holds the program, as the environment says: then it uses no port but the
    /// application.
    [[nodiscard]] static bool isInert(const Environment& environment);

    /// Creates and connects everything, unless a test harness hosts the application.
    void applicationDidFinishLaunching() override;
    /// Brings the settings window to the front.
    void applicationDidReopen() override;

    // Set once at launch.
    std::shared_ptr<StatusBarController> statusBarController;
    std::shared_ptr<MusicMonitor> musicMonitor;
    std::shared_ptr<SpeechManager> speechManager;

private:
    void subscribe();
    void playingChanged(bool isPlaying);
    void stopLater();
    void announceLater(const std::string& trackName, const std::shared_ptr<MusicMonitor>& monitor);
    void announce(const std::string& trackName, const MusicMonitor& monitor);

    Platform& platform_;
    std::vector<Subscription> cancellables_;  ///< in the order in which the deliveries must come
};

}  // namespace sonvara
