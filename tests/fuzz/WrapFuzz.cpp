// Breaking the DJ's line for the menu, and the text rules beneath.
#include "Require.h"
#include "support/Text.h"
#include "ui/StatusBarController.h"

#include <string>

using namespace sonvara;
using fuzz::require;

namespace {

std::string withoutBlanks(std::string_view s)
{
    std::string result(s);
    std::erase(result, ' ');
    return result;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto input = fuzz::textOf(data, size);
    const auto wrapped = StatusBarController::wrap(input, 40);
    if (input.find('\n') == std::string_view::npos) {
        auto joined = withoutBlanks(wrapped);
        std::erase(joined, '\n');
        require(joined == withoutBlanks(input));
        for (const auto line : text::split(wrapped, "\n")) {
            require(text::length(line) <= 40 || line.find(' ') == std::string_view::npos);
        }
    }
    require(text::length(input) <= input.size());
    require(text::equal(input, input));
    require(text::equal(input.substr(0, size / 2), input) == text::equal(input, input.substr(0, size / 2)));
    return 0;
}
