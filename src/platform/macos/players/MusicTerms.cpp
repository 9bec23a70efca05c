#include "platform/macos/players/MusicTerms.h"

#include "support/PlayerScripts.h"

#include <string_view>

namespace sonvara {

namespace {

constexpr std::string_view oldTerm = " loved of ";
constexpr std::string_view newTerm = " favorited of ";

/// Of a poll: a player that does not run has answered nothing yet that tells of its terms.
bool hasTrack(const ScriptResult& result)
{
    return result.text && poll::read(*result.text, poll::musicFields);
}

bool isFailure(const ScriptResult& result)
{
    return !result.created || result.error || result.text == poll::failed;
}

}  // namespace

ScriptResult MusicTerms::run(const std::string& source, const Execute& execute)
{
    const auto place = source.find(oldTerm);
    if (place == std::string::npos) return execute(source);
    const auto translated = [&] { return std::string(source).replace(place, oldTerm.size(), newTerm); };
    if (term_ == Term::favorited) return execute(translated());

    auto result = execute(source);
    if (hasTrack(result)) term_ = Term::loved;
    if (!isFailure(result) || term_ == Term::loved) return result;
    auto other = execute(translated());
    if (hasTrack(other)) term_ = Term::favorited;
    return other.created ? other : result;
}

}  // namespace sonvara
