#include "platform/linux/speech/SpeechDispatcherSynthesizer.h"

#include "platform/linux/speech/LanguageTag.h"

namespace sonvara {

std::string SpeechDispatcherSynthesizer::currentLanguageCode() const
{
    return languageTag(environment_.variables());
}

std::optional<SpeechVoice> SpeechDispatcherSynthesizer::voiceForLanguage(const std::string& code) const
{
    // The daemon does not follow the session's locale by itself, so the language has to be set.
    if (code == "en-US" || !isLanguageTag(code)) return std::nullopt;
    return SpeechVoice{code};
}

}  // namespace sonvara
