// A voice of which the keeper of the volumes knows how many lines are under way.
#pragma once

#include "ports/SpeechSynthesizer.h"

#include <memory>

namespace sonvara {

class LoweredPlayers;
class MainQueue;

/// Passes everything on unchanged and at once, and counts. Main thread, as the voice.
class CountedVoice final : public SpeechSynthesizer {
public:
    /// All must outlive the voice's last call.
    CountedVoice(SpeechSynthesizer& voice, MainQueue& mainQueue, LoweredPlayers& keeper);

    void setDelegate(std::weak_ptr<SpeechSynthesizerDelegate> delegate) override;
    void speak(SpeechUtterance utterance) override;
    void stopSpeaking() override { voice_.stopSpeaking(); }
    [[nodiscard]] std::string currentLanguageCode() const override { return voice_.currentLanguageCode(); }
    [[nodiscard]] std::optional<SpeechVoice> voiceForLanguage(const std::string& code) const override
    {
        return voice_.voiceForLanguage(code);
    }

private:
    class Endings;

    SpeechSynthesizer& voice_;
    LoweredPlayers& keeper_;
    std::shared_ptr<Endings> endings_;
};

}  // namespace sonvara
