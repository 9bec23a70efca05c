#include "ui/StatusBarController.h"

#include "ports/Application.h"
#include "ports/Platform.h"
#include "ports/Queues.h"
#include "ports/UserDefaults.h"
#include "ui/SettingsView.h"
#include "ui/StatusIcon.h"

#include <utility>

namespace sonvara {

namespace {
constexpr const char* placeholderSymbol = "music.note";
}

std::shared_ptr<StatusBarController> StatusBarController::create(Platform& platform,
                                                                 std::shared_ptr<MusicMonitor> monitor,
                                                                 std::shared_ptr<SpeechManager> speech)
{
    std::shared_ptr<StatusBarController> controller(
        new StatusBarController(platform, std::move(monitor), std::move(speech)));
    controller->logger_.debug({{"Initializing status bar controller"}});
    controller->configureStatusItem();
    controller->setupMenu();
    controller->statusItem_->setMenu(*controller->menu_);
    controller->menuWillOpen_ = controller->menu_->onWillOpen([weak = controller->weak_from_this()] {
        if (const auto opened = weak.lock()) opened->menuWillOpen();
    });
    return controller;
}

StatusBarController::StatusBarController(Platform& platform, std::shared_ptr<MusicMonitor> monitor,
                                         std::shared_ptr<SpeechManager> speech)
    : platform_(platform),
      menu_(platform.statusBar.makeMenu()),
      statusItem_(platform.statusBar.makeSquareItem()),
      musicMonitor_(std::move(monitor)),
      speechManager_(std::move(speech)),
      logger_(platform.systemLog, "StatusBarController")
{}

StatusBarController::~StatusBarController() = default;

void StatusBarController::configureStatusItem()
{
    auto* button = statusItem_->button();
    if (button == nullptr) {
        logger_.error({{"Failed to acquire status item button"}});
        return;
    }
    statusButton_ = button;
    statusItem_->setVisible(true);
    statusButton_->setSymbol({placeholderSymbol, "Sonvara"});
    logger_.debug({{"Configured status button with placeholder icon"}});
    renderIcons();
}

void StatusBarController::renderIcons()
{
    platform_.globalQueue.post(QualityOfService::userInitiated, [weak = weak_from_this()] {
        const auto controller = weak.lock();
        if (!controller) return;
        auto notPlaying = controller->createCustomIcon(false);
        auto playing = controller->createCustomIcon(true);
        controller->platform_.mainQueue.post(
            [controller, notPlaying, playing] { controller->cacheIcons(notPlaying, playing); });
    });
}

std::shared_ptr<const Image> StatusBarController::createCustomIcon(bool isPlaying) const
{
    return platform_.imageRenderer.render(statusIcon(isPlaying));
}

void StatusBarController::cacheIcons(std::shared_ptr<const Image> notPlaying,
                                     std::shared_ptr<const Image> playing)
{
    logger_.debug({{"Caching custom icons (playing: "},
                   Logger::flag(playing != nullptr),
                   {", notPlaying: "},
                   Logger::flag(notPlaying != nullptr),
                   {")"}});
    cachedNotPlayingIcon_ = std::move(notPlaying);
    cachedPlayingIcon_ = std::move(playing);
    if (statusButton_ == nullptr) return;
    // Whatever plays now: the icon follows the playing state from the next update on.
    if (cachedNotPlayingIcon_) {
        statusButton_->setImage(cachedNotPlayingIcon_);
    } else {
        statusButton_->setSymbol({placeholderSymbol, "Sonvara"});
    }
}

void StatusBarController::updateIcon(bool isPlaying)
{
    platform_.mainQueue.post([weak = weak_from_this(), isPlaying] {
        if (const auto controller = weak.lock()) controller->showIcon(isPlaying);
    });
}

void StatusBarController::showIcon(bool isPlaying)
{
    const auto& icon = isPlaying ? cachedPlayingIcon_ : cachedNotPlayingIcon_;
    if (icon) {
        if (statusButton_ != nullptr) statusButton_->setImage(icon);
    } else {
        logger_.error(
            {{"updateIcon requested but cached icon missing (isPlaying="}, Logger::flag(isPlaying), {")"}});
        if (statusButton_ != nullptr) statusButton_->setSymbol({placeholderSymbol, ""});
    }
    logger_.debug({{"Status icon updated (isPlaying="}, Logger::flag(isPlaying), {")"}});
}

void StatusBarController::refreshMenu()
{
    platform_.mainQueue.post([controller = shared_from_this()] { controller->setupMenu(); });
}

void StatusBarController::menuWillOpen()
{
    setupMenu();
}

void StatusBarController::setupMenu()
{
    menu_->setItems(menuItems());
}

void StatusBarController::toggleMute()
{
    platform_.userDefaults.setBool(settings::announcementsEnabled.key, !announcementsEnabled());
    setupMenu();
}

bool StatusBarController::announcementsEnabled() const
{
    return read(platform_.userDefaults, settings::announcementsEnabled);
}

void StatusBarController::quitApp()
{
    platform_.application.terminate();
}

void StatusBarController::openSettings()
{
    if (settingsWindow_ && settingsWindow_->isVisible()) {
        bringToFront(*settingsWindow_);
        return;
    }
    WindowSetup setup;
    setup.title = "Sonvara Settings";
    setup.contentWidth = 420;
    setup.contentHeight = 360;
    setup.isClosable = true;
    setup.isMiniaturizable = true;
    setup.isCentered = true;
    setup.content = SettingsView::create(platform_)->form();
    const auto window = platform_.windows.make(std::move(setup));
    bringToFront(*window);
    settingsWindow_ = window;  // drops an earlier one, which nobody sees
    window->setDelegate(weak_from_this());
}

void StatusBarController::bringToFront(Window& window)
{
    window.makeKeyAndOrderFront();
    platform_.application.activateIgnoringOtherApps();
}

void StatusBarController::windowWillClose(Window& window)
{
    if (settingsWindow_.get() == &window) settingsWindow_.reset();
}

}  // namespace sonvara
