// The prompt for an AI tool, and the line that its answer comes down to.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace sonvara {

/// The whole prompt: who the DJ is, how to answer, and the track's facts as they are. Without an album
/// there is no album line.
[[nodiscard]] std::string buildPrompt(std::string_view track, std::string_view artist, std::string_view album,
                                      bool favorited);

/// The last non-empty line of a tool's output, trimmed; empty when there is none. Tools like to print a
/// greeting or a heading first.
[[nodiscard]] std::string introLine(std::string_view output);

}  // namespace sonvara
