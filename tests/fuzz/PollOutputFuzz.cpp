// What a player answers to a poll.
#include "Require.h"
#include "monitor/MusicMonitor.h"
#include "support/Text.h"

using namespace sonvara;
using fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string output(fuzz::textOf(data, size));
    for (const std::size_t fields : {4U, 5U}) {
        const auto record = MusicMonitor::parsePollOutput("Music", output, fields);
        require(record.has_value() == (text::split(output, "||").size() >= fields));
        if (!record) continue;
        require(record->name.find("||") == std::string::npos);
        require(text::trim(record->name) == record->name && text::trim(record->album) == record->album);
        require(fields == 5 || !record->favorited);
    }
    return 0;
}
