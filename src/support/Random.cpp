#include "support/Random.h"

#include <cstdint>
#include <string_view>

namespace sonvara {
namespace {

std::mt19937_64 seeded()
{
    std::random_device source;
    std::seed_seq seed{source(), source(), source(), source()};
    return std::mt19937_64(seed);
}

}  // namespace

std::mt19937_64& randomNumbers()
{
    thread_local std::mt19937_64 numbers = seeded();
    return numbers;
}

std::string makeUuid()
{
    static constexpr std::string_view digits = "0123456789ABCDEF";
    std::string uuid = "xxxxxxxx-xxxx-4xxx-yxxx-xxxxxxxxxxxx";
    std::uint64_t drawn = 0;
    int nibblesLeft = 0;
    for (auto& c : uuid) {
        if (c != 'x' && c != 'y') continue;
        if (nibblesLeft == 0) {
            drawn = randomNumbers()();
            nibblesLeft = 16;
        }
        const auto nibble = drawn & 0xFU;
        drawn >>= 4U;
        --nibblesLeft;
        c = digits[c == 'x' ? nibble : (nibble & 0x3U) | 0x8U];  // y: the variant's two fixed bits
    }
    return uuid;
}

}  // namespace sonvara
