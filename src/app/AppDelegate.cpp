#include "app/AppDelegate.h"

#include "log/DJLog.h"
#include "monitor/MusicMonitor.h"
#include "ports/Platform.h"
#include "ports/Queues.h"
#include "ports/System.h"
#include "speech/SpeechManager.h"
#include "ui/StatusBarController.h"

namespace sonvara {

bool AppDelegate::isInert(const Environment& environment)
{
    return environment.variables().contains("XCTestConfigurationFilePath");
}

void AppDelegate::applicationDidFinishLaunching()
{
    if (isInert(platform_.environment)) return;
    musicMonitor = MusicMonitor::create(platform_);
    speechManager = SpeechManager::create(platform_);
    statusBarController = StatusBarController::create(platform_, musicMonitor, speechManager);
    subscribe();
}

void AppDelegate::applicationDidReopen()
{
    if (statusBarController) statusBarController->openSettings();
}

void AppDelegate::subscribe()
{
    const auto weak = weak_from_this();
    const auto refreshMenu = [weak](const std::string&) {
        const auto delegate = weak.lock();
        if (delegate && delegate->statusBarController) delegate->statusBarController->refreshMenu();
    };
    cancellables_.push_back(musicMonitor->isPlaying.subscribe([weak](bool isPlaying) {
        if (const auto delegate = weak.lock()) delegate->playingChanged(isPlaying);
    }));
    cancellables_.push_back(musicMonitor->trackName.subscribe(refreshMenu));
    cancellables_.push_back(DJLog::shared().lastChat.subscribe(refreshMenu));
    cancellables_.push_back(musicMonitor->trackName.subscribe(
        [weak, weakMonitor = std::weak_ptr(musicMonitor)](const std::string& trackName) {
            const auto delegate = weak.lock();
            const auto monitor = weakMonitor.lock();
            if (delegate && monitor) delegate->announceLater(trackName, monitor);
        }));
}

void AppDelegate::playingChanged(bool isPlaying)
{
    if (statusBarController) statusBarController->updateIcon(isPlaying);
    if (!isPlaying) stopLater();
}

void AppDelegate::stopLater()
{
    platform_.mainQueue.post([weak = weak_from_this()] {
        const auto delegate = weak.lock();
        if (delegate && delegate->speechManager) delegate->speechManager->stopNow();
    });
}

void AppDelegate::announceLater(const std::string& trackName, const std::shared_ptr<MusicMonitor>& monitor)
{
    // The name is delivered before the update it belongs to is complete; the task runs after it.
    platform_.mainQueue.post(
        [delegate = shared_from_this(), monitor, trackName] { delegate->announce(trackName, *monitor); });
}

void AppDelegate::announce(const std::string& trackName, const MusicMonitor& monitor)
{
    if (trackName.empty() || !monitor.isPlaying.get() || !speechManager) return;
    speechManager->speak(trackName, monitor.artistName.get(), monitor.albumName.get(),
                         monitor.isFavorited.get(), monitor.source.get());
}

}  // namespace sonvara
