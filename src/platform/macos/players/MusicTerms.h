// What Music calls a favourite.
#pragma once

#include "ports/ScriptRunner.h"

#include <atomic>
#include <functional>
#include <string>

namespace sonvara {

/// Since macOS 14, Music calls "favorited" what it called "loved" before, and its poll, which says "loved", always ends
/// as an error. Then the same text is tried with the new term. The one that worked first is used from then on. As long
/// as neither has, as with a stream that has no track, both are tried each time. Any thread.
class MusicTerms {
public:
    using Execute = std::function<ScriptResult(const std::string& source)>;

    /// Runs a script of the core's, in the terms that Music understands.
    [[nodiscard]] ScriptResult run(const std::string& source, const Execute& execute);

private:
    enum class Term { unknown, loved, favorited };
    std::atomic<Term> term_ = Term::unknown;
};

}  // namespace sonvara
