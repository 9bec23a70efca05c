#include "platform/linux/players/PlayerIdentity.h"

#include <algorithm>
#include <array>

namespace sonvara {
namespace {

constexpr std::array<std::string_view, 17> browserWords = {
    "firefox", "mozilla", "librewolf", "waterfox", "floorp",    "chromium", "chrome",  "brave",      "edge",
    "vivaldi", "opera",   "epiphany",  "falkon",   "konqueror", "thorium",  "browser", "qutebrowser"};

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool isWordCharacter(char c)
{
    return (lower(c) >= 'a' && lower(c) <= 'z') || static_cast<unsigned char>(c) >= 0x80;
}

// Names come as "Google Chrome", "microsoft-edge-beta", "org.mozilla.firefox" or "chromium2".
bool namesBrowser(std::string_view text)
{
    std::string word;
    const auto isBrowserWord = [&word] {
        return std::ranges::find(browserWords, word) != browserWords.end();
    };
    for (const char c : text) {
        if (isWordCharacter(c)) {
            word.push_back(lower(c));
            continue;
        }
        if (isBrowserWord()) return true;
        word.clear();
    }
    return isBrowserWord();
}

bool isOrExtends(std::string_view name, std::string_view base)
{
    return name.starts_with(base) && (name.size() == base.size() || name[base.size()] == '.');
}

}  // namespace

NameKind kindOfName(std::string_view name)
{
    if (!isOrExtends(name, namePrefix) || name.size() <= namePrefix.size() + 1) return NameKind::ignored;
    name.remove_prefix(namePrefix.size() + 1);
    if (name == "spotify" || name.starts_with("spotify.instance")) return NameKind::spotify;
    for (const auto* const mirror : {"playerctld", "kdeconnect", "plasma-browser-integration"})
        if (isOrExtends(name, mirror)) return NameKind::ignored;
    const bool browserLike = namesBrowser(name.substr(0, name.find('.')));
    return browserLike ? NameKind::browserLike : NameKind::player;
}

bool isBrowser(NameKind name, const Introduction& introduction)
{
    if (name == NameKind::spotify) return false;
    if (introduction.isEmpty()) return name == NameKind::browserLike;
    return namesBrowser(introduction.identity) || namesBrowser(introduction.desktopEntry);
}

}  // namespace sonvara
