// A voice whose lines do not end before the player has been lowered for them.
#pragma once

#include "ports/SpeechSynthesizer.h"

#include <memory>

namespace sonvara {

class GlobalQueue;

/// A player is lowered while the line begins, which takes it a while, and is put back at the line's end. An
/// end that overtook the lowering would leave the player lowered: a line that nothing can speak ends at once,
/// and a pause may come at any moment. So of each line's end nothing is heard for the first second. What is
/// heard of the voice itself is unchanged.
class PatientVoice : public SpeechSynthesizer {
public:
    /// Both must outlive this.
    PatientVoice(SpeechSynthesizer& voice, GlobalQueue& queue);

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
    GlobalQueue& queue_;
    std::shared_ptr<Endings> endings_;
};

}  // namespace sonvara
