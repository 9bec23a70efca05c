// The prompt for an AI tool, and the line that its answer comes down to.
#include "ai/AIDJ.h"

#include "support/Text.h"

#include <string>
#include <string_view>

namespace sonvara {
namespace {

constexpr std::string_view persona =
    "a smooth radio DJ with deep music knowledge. Introduce the track with a little upbeat DJ chat, and work "
    "in ONE genuinely interesting, true fact about the artist or song. If you are not sure a fact is true, "
    "skip it rather than invent one.";
constexpr std::string_view responseRules =
    " Respond with ONE or TWO short spoken sentences (max 45 words total). It will be read aloud by a "
    "text-to-speech voice, so use plain words only — no emoji, hashtags, markdown, quotation marks, or stage "
    "directions. Output only the spoken line, nothing before or after.";
static_assert(persona.size() == 237 && responseRules.size() == 268, "the prompt's wording is fixed");

}  // namespace

std::string AIDJ::buildPrompt(std::string_view track, std::string_view artist, std::string_view album,
                              bool favorited)
{
    std::string prompt = "You are ";
    prompt.append(persona).append(responseRules).append("\n\n");
    prompt.append("Track: ").append(track);
    prompt.append("\nArtist: ").append(artist);
    if (!album.empty()) prompt.append("\nAlbum: ").append(album);
    if (favorited) prompt.append("\nNote: this is one of the listener's favorite songs.");
    prompt.append("\n\nGive the DJ intro line.");
    return prompt;
}

std::string AIDJ::introLine(std::string_view output)
{
    // Where none is found, the place after it is the beginning.
    output = output.substr(0, output.find_last_not_of('\n') + 1);
    output.remove_prefix(output.rfind('\n') + 1);
    return std::string(text::trim(output));
}

}  // namespace sonvara
