// What an AI tool prints.
#include "Require.h"
#include "ai/AIDJ.h"
#include "support/Text.h"

#include <string>

using namespace sonvara;
using fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto output = fuzz::textOf(data, size);
    const auto line = AIDJ::introLine(output);
    require(line.find('\n') == std::string::npos);
    require(text::trim(line) == line);
    require(output.find(line) != std::string_view::npos);
    if (text::isValidUtf8(output)) require(text::isValidUtf8(line));
    return 0;
}
