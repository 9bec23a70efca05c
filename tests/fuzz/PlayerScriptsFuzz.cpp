// Which texts are taken for commands to a player.
#include "Require.h"
#include "support/PlayerScripts.h"

#include <string>

using namespace sonvara;
using fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto script = fuzz::textOf(data, size);
    const auto command = parseVolumeScript(script);
    if (!command) return 0;
    require(volumeScript(*command) == script);
    require(!command->volume || (*command->volume >= 0 && *command->volume <= 100));
    require(command->player.find('"') == std::string::npos);
    return 0;
}
