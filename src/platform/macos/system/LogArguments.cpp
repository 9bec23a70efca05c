#include "platform/macos/system/LogArguments.h"

#include <algorithm>

namespace sonvara {

LogArguments::LogArguments(const std::vector<LogPiece>& pieces)
{
    std::vector<std::string> runs(1);  // public at even indices
    for (const LogPiece& piece : pieces) {
        const bool lastIsPublic = runs.size() % 2 == 1;
        if (piece.isPublic != lastIsPublic) runs.emplace_back();
        runs.back() += piece.text;
    }
    privateCount = std::min(runs.size() / 2, maxPrivate);

    constexpr std::size_t lastHidden = 2 * maxPrivate - 1;
    const std::size_t lastPrivateRun = runs.size() / 2 * 2 - 1;  // unused when there is none
    for (std::size_t i = 0; i < runs.size(); ++i) {
        const bool isTail = runs.size() > 1 && i > lastPrivateRun;
        texts[isTail ? 2 * privateCount : std::min(i, lastHidden)] += runs[i];
    }
}

}  // namespace sonvara
