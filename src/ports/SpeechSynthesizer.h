// Port: the system's voice.
#pragma once

#include <memory>
#include <optional>
#include <string>

namespace sonvara {

/// A voice of the system, by the platform's own identifier.
struct SpeechVoice {
    std::string identifier;
};

/// One line to speak. Pitch, volume and delays are the platform's defaults.
struct SpeechUtterance {
    std::string line;
    std::optional<SpeechVoice> voice;  ///< absent: the system's default voice
    double rate = 0.5;                 ///< 0 slowest to 1 fastest; 0.5 is the system's usual rate
};

/// Hears of the end of utterances: exactly one of the two calls for each one handed over, on any thread.
class SpeechSynthesizerDelegate {
public:
    virtual ~SpeechSynthesizerDelegate() = default;
    virtual void didFinish() = 0;
    virtual void didCancel() = 0;
};

/// Speaks utterances one after the other. Main thread only; no operation blocks.
class SpeechSynthesizer {
public:
    virtual ~SpeechSynthesizer() = default;

    /// Sets who hears of ends and cancels; held weakly.
    virtual void setDelegate(std::weak_ptr<SpeechSynthesizerDelegate> delegate) = 0;

    /// Queues `utterance` behind those still speaking. An utterance that cannot be spoken is
    /// reported as ended like any other.
    virtual void speak(SpeechUtterance utterance) = 0;

    /// Silences the current utterance at once and forgets the waiting ones; each is reported as
    /// cancelled. Does nothing when none is under way.
    virtual void stopSpeaking() = 0;

    /// The language in which the user runs the system, as a language tag ("en-US").
    [[nodiscard]] virtual std::string currentLanguageCode() const = 0;

    /// The system's voice for a language tag, if there is one.
    [[nodiscard]] virtual std::optional<SpeechVoice> voiceForLanguage(const std::string& code) const = 0;
};

}  // namespace sonvara
