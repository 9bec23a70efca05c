// The system's voice.
#pragma once

#include "ports/SpeechSynthesizer.h"

namespace sonvara {

/// Keeps its own list of the utterances under way, so that each is reported as ended exactly once:
/// the system is not known to report those that a stop took out of its queue.
class AppleSpeechSynthesizer final : public SpeechSynthesizer {
public:
    AppleSpeechSynthesizer();
    ~AppleSpeechSynthesizer() override;

    void setDelegate(std::weak_ptr<SpeechSynthesizerDelegate> delegate) override;
    void speak(SpeechUtterance utterance) override;
    void stopSpeaking() override;
    [[nodiscard]] std::string currentLanguageCode() const override;
    [[nodiscard]] std::optional<SpeechVoice> voiceForLanguage(const std::string& code) const override;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace sonvara
