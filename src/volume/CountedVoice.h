// A voice that tells `LoweredPlayers` when a line begins and ends.
#pragma once

#include "ports/SpeechSynthesizer.h"

#include <memory>

namespace sonvara {

class LoweredPlayers;
class MainQueue;

/// Passes everything on unchanged and at once, and counts. Main thread, as the voice.
class CountedVoice final : public SpeechSynthesizer {
public:
    /// All must outlive this, and `voice` the call of `close`.
    CountedVoice(SpeechSynthesizer& voice, MainQueue& mainQueue, LoweredPlayers& loweredPlayers);

    void setDelegate(std::weak_ptr<SpeechSynthesizerDelegate> delegate) override;
    void speak(SpeechUtterance utterance) override;
    void stopSpeaking() override;
    [[nodiscard]] std::string currentLanguageCode() const override;
    [[nodiscard]] std::optional<SpeechVoice> voiceForLanguage(const std::string& code) const override;

    /// From now on nothing is spoken, and the voice may go. Tasks that the core had posted may still come to this.
    void close() { voice_ = nullptr; }

private:
    class Endings;

    SpeechSynthesizer* voice_;  ///< null once closed
    LoweredPlayers& loweredPlayers_;
    std::shared_ptr<Endings> endings_;
};

}  // namespace sonvara
