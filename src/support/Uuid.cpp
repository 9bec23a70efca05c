#include "support/Uuid.h"

#include <random>
#include <string_view>

namespace sonvara {

std::string makeUuid()
{
    static constexpr std::string_view digits = "0123456789ABCDEF";
    std::string uuid = "xxxxxxxx-xxxx-4xxx-yxxx-xxxxxxxxxxxx";
    std::random_device random;
    for (auto& c : uuid) {
        if (c != 'x' && c != 'y') continue;
        const auto nibble = random() & 0xFU;
        c = digits[c == 'x' ? nibble : (nibble & 0x3U) | 0x8U];  // y: the variant's two fixed bits
    }
    return uuid;
}

}  // namespace sonvara
