#include "platform/linux/speech/LanguageTag.h"

#include <algorithm>

namespace sonvara {

namespace {

bool isAlphanumeric(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

/// The locale for messages: the first of the three variables that is set and not empty rules.
std::string messagesLocale(const Variables& variables)
{
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const auto found = variables.find(name);
        if (found != variables.end() && !found->second.empty()) return found->second;
    }
    return {};
}

}  // namespace

bool isLanguageTag(std::string_view tag)
{
    if (tag.empty() || tag.front() == '-' || tag.back() == '-') return false;
    return tag.find("--") == std::string_view::npos &&
           std::ranges::all_of(tag, [](char c) { return isAlphanumeric(c) || c == '-'; });
}

std::string languageTag(const Variables& variables)
{
    std::string tag = messagesLocale(variables);
    tag.resize(std::min(tag.size(), tag.find_first_of(".@")));
    std::ranges::replace(tag, '_', '-');
    if (tag == "C" || tag == "POSIX" || !isLanguageTag(tag)) return "en-US";
    return tag;
}

}  // namespace sonvara
