// The system's voice on Linux: speech-dispatcher.
#pragma once

#include "platform/linux/speech/SpeechQueue.h"
#include "ports/SpeechSynthesizer.h"
#include "ports/System.h"

namespace sonvara {

/// Connects on first use and closes after a quiet while. A line whose end the daemon does not report
/// in the time that its length allows counts as ended. The first failure after a success is logged.
/// The destructor cancels what is under way and blocks for at most half a second.
class SpeechDispatcherSynthesizer final : public SpeechSynthesizer {
public:
    /// Throws as the queue does. Both references outlive the synthesizer.
    SpeechDispatcherSynthesizer(SystemLog& log, const Environment& environment, SpeechTimes times = {})
        : environment_(environment),
          queue_(log, times)
    {}

    void setDelegate(std::weak_ptr<SpeechSynthesizerDelegate> delegate) override
    {
        queue_.setDelegate(std::move(delegate));
    }
    void speak(SpeechUtterance utterance) override { queue_.speak(std::move(utterance)); }
    void stopSpeaking() override { queue_.stop(); }

    /// From the locale for messages.
    [[nodiscard]] std::string currentLanguageCode() const override;

    /// The voice is the daemon's choice for the language. None for "en-US": that is what the daemon
    /// speaks unless the user set it up otherwise, so the user's choice is left alone.
    [[nodiscard]] std::optional<SpeechVoice> voiceForLanguage(const std::string& code) const override;

private:
    const Environment& environment_;
    SpeechQueue queue_;
};

}  // namespace sonvara
