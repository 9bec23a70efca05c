// What the status menu shows.
#include "log/DJLog.h"
#include "monitor/MusicMonitor.h"
#include "ports/Platform.h"
#include "support/Text.h"
#include "ui/StatusBarController.h"

#include <cstddef>

namespace sonvara {
namespace {

constexpr std::size_t chatWidth = 40;  // characters to a line of the DJ's last words

MenuItem disabledItem(std::string title)
{
    MenuItem item;
    item.title = std::move(title);
    return item;
}

MenuItem separator()
{
    MenuItem item;
    item.isSeparator = true;
    return item;
}

MenuItem nowPlayingItem(const MusicMonitor& monitor)
{
    if (!monitor.isPlaying.get() || monitor.trackName.get().empty()) return disabledItem("No music playing");
    return disabledItem(monitor.trackName.get() + " - " + monitor.artistName.get());
}

MenuItem lastChatItem(const std::string& lastChat)
{
    if (lastChat.empty()) return disabledItem("—");
    MenuItem item;
    item.attributedTitle = StyledText{StatusBarController::wrap(lastChat, chatWidth), FontRole::smallMenu,
                                      ColorRole::secondaryLabel};
    return item;
}

}  // namespace

std::string StatusBarController::wrap(std::string_view line, std::size_t width)
{
    std::string finished;
    std::string current;
    text::Clusters inLine;  // counting the line afresh for each word would take its width for each
    for (const auto word : text::split(line, " ")) {
        if (word.empty()) continue;
        if (!current.empty() && inLine.count() + 1 + text::length(word) <= width) {
            current.append(" ").append(word);
            inLine.add(" ");
            inLine.add(word);
            continue;
        }
        if (!current.empty()) finished.append(current).append("\n");
        current = word;
        inLine = {};
        inLine.add(word);
    }
    return finished + current;
}

MenuItem StatusBarController::actionItem(const char* title, void (StatusBarController::*action)())
{
    MenuItem item;
    item.title = title;
    item.isEnabled = true;
    item.action = [weak = weak_from_this(), action] {
        if (const auto controller = weak.lock()) (controller.get()->*action)();
    };
    return item;
}

std::vector<MenuItem> StatusBarController::menuItems()
{
    auto mute = actionItem("Mute DJ", &StatusBarController::toggleMute);
    mute.isChecked = !announcementsEnabled();
    return {disabledItem("Currently Playing"),
            nowPlayingItem(*musicMonitor_),
            disabledItem("DJ Chat:"),
            lastChatItem(DJLog::shared().lastChat.get()),
            separator(),
            std::move(mute),
            separator(),
            actionItem("Settings...", &StatusBarController::openSettings),
            separator(),
            actionItem("Quit Sonvara", &StatusBarController::quitApp)};
}

}  // namespace sonvara
