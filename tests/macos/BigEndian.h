// Numbers in files of pictures and icons.
#pragma once

#include <cstddef>
#include <string>

namespace sonvara::test {

/// The number in the four bytes at `offset`, the most significant one first. Throws when there are fewer.
[[nodiscard]] inline std::size_t bigEndianAt(const std::string& data, std::size_t offset)
{
    std::size_t number = 0;
    for (std::size_t i = 0; i < 4; ++i)
        number = number << 8 | static_cast<unsigned char>(data.at(offset + i));
    return number;
}

}  // namespace sonvara::test
