// The system's voice.
#pragma once

#include "platform/macos/speech/SpokenLines.h"
#include "ports/SpeechSynthesizer.h"

#include <memory>

namespace sonvara {

class GlobalQueue;
class MainQueue;

/// Which line it has, and when that has ended, is up to `SpokenLines`.
///
/// A voice takes its time to be looked up, so a worker does that, ahead: at the start, and again with every line, as
/// the user may choose another one. Until then, and for every other language, there is none.
class AppleSpeechSynthesizer final : public SpeechSynthesizer {
public:
    /// Both must outlive this.
    AppleSpeechSynthesizer(GlobalQueue& workers, MainQueue& mainQueue, const SpokenLines::Times& times = {});
    ~AppleSpeechSynthesizer() override;

    void setDelegate(std::weak_ptr<SpeechSynthesizerDelegate> delegate) override;
    void speak(SpeechUtterance utterance) override;
    void stopSpeaking() override;
    [[nodiscard]] std::string currentLanguageCode() const override;
    [[nodiscard]] std::optional<SpeechVoice> voiceForLanguage(const std::string& code) const override;

private:
    struct Impl;
    std::shared_ptr<Impl> impl_;
};

}  // namespace sonvara
