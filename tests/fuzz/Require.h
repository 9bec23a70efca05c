// What a fuzzer states about a result.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace sonvara::fuzz {

/// Ends the process, which the fuzzer reports with its input, unless `condition` holds.
inline void require(bool condition)
{
    if (!condition) std::abort();
}

inline std::string_view textOf(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

}  // namespace sonvara::fuzz
