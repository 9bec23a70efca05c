#include "support/Uuid.h"

#include <random>
#include <string_view>

namespace sonvara {

std::string makeUuid()
{
    static constexpr std::string_view digits = "0123456789ABCDEF";
    std::string uuid = "xxxxxxxx-xxxx-4xxx-yxxx-xxxxxxxxxxxx";
    std::random_device source;
    std::random_device::result_type drawn = 0;
    int nibblesLeft = 0;
    for (auto& c : uuid) {
        if (c != 'x' && c != 'y') continue;
        if (nibblesLeft == 0) {
            drawn = source();
            nibblesLeft = 8;
        }
        const auto nibble = drawn & 0xFU;
        drawn >>= 4U;
        --nibblesLeft;
        c = digits[c == 'x' ? nibble : (nibble & 0x3U) | 0x8U];  // y: the variant's two fixed bits
    }
    return uuid;
}

}  // namespace sonvara
