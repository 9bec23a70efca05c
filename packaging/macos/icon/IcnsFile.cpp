#include "IcnsFile.h"

#include <string_view>

namespace sonvara {

namespace {

struct Kind {
    std::string_view code;
    std::size_t size;  ///< index in icnsSizes()
};

// The plain kind and the one of half the size in points for screens with two pixels a point.
constexpr Kind kinds[] = {{"ic11", 0}, {"ic12", 1}, {"ic07", 2}, {"ic13", 3},
                          {"ic08", 3}, {"ic14", 4}, {"ic09", 4}, {"ic10", 5}};

std::string bigEndian(std::size_t number)
{
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(number >> shift & 0xFFU);
    return bytes;
}

/// A code, the length of the whole piece, and its content.
std::string piece(std::string_view code, const std::string& content)
{
    return std::string(code) + bigEndian(content.size() + 8) + content;
}

}  // namespace

const std::vector<unsigned>& icnsSizes()
{
    static const std::vector<unsigned> sizes{32, 64, 128, 256, 512, 1024};
    return sizes;
}

std::string icnsFile(const std::vector<std::string>& pictures)
{
    std::string content;
    for (const Kind& kind : kinds) content += piece(kind.code, pictures.at(kind.size));
    return piece("icns", content);
}

}  // namespace sonvara
