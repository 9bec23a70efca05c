// The system's voice on Linux, speech-dispatcher: which line is there, which wait, and when one counts as ended.
#pragma once

#include "platform/linux/speech/LineText.h"
#include "platform/linux/speech/SpeechdSession.h"
#include "ports/Queues.h"
#include "ports/SpeechSynthesizer.h"
#include "ports/System.h"
#include "ports/SystemLog.h"
#include "support/SpeakingTime.h"

#include <QTimer>

#include <chrono>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>

namespace sonvara {

struct SpeechTimes {
    SpeakingTime speaking;
    std::chrono::milliseconds answerLimit{8000};  ///< for one call of the library; starting the daemon is one
    std::chrono::milliseconds quietWhile{30000};  ///< after the last line, before the connection is closed
    std::chrono::milliseconds quitLimit{500};     ///< for silencing the current line at the end
};

/// Gives the lines to the daemon one at a time, so that a line which waits can still be taken back, and sees to
/// it that each comes to exactly one end, whatever the daemon does: one whose end is not reported in the time
/// that its length allows counts as ended. Connects on first use and closes after a quiet while. The first
/// failure after a success is logged.
///
/// Runs on the main thread's event loop, and so do the delegate's calls, also inside `speak` and
/// `stopSpeaking`. Nothing blocks but the destructor: it cancels all lines, and waits for the quit limit at most.
class SpeechDispatcherSynthesizer final : public SpeechSynthesizer {
public:
    /// All references outlive the synthesizer.
    SpeechDispatcherSynthesizer(MainQueue& mainQueue, SystemLog& log, const Environment& environment,
                                SpeechTimes times = {});
    ~SpeechDispatcherSynthesizer() override;
    SpeechDispatcherSynthesizer(const SpeechDispatcherSynthesizer&) = delete;
    SpeechDispatcherSynthesizer& operator=(const SpeechDispatcherSynthesizer&) = delete;

    void setDelegate(std::weak_ptr<SpeechSynthesizerDelegate> delegate) override;
    void speak(SpeechUtterance utterance) override;
    void stopSpeaking() override;

    /// From the locale for messages.
    [[nodiscard]] std::string currentLanguageCode() const override;

    /// The voice is the daemon's choice for the language. None for "en-US": that is what the daemon
    /// speaks unless the user set it up otherwise, so the user's choice is left alone.
    [[nodiscard]] std::optional<SpeechVoice> voiceForLanguage(const std::string& code) const override;

private:
    struct Line {
        LineNumber number;
        std::string text;
        SpeechdManner manner;
    };
    /// The line that is at the daemon, or on its way there.
    struct Current {
        Line line;
        bool given = false;         // to the session
        SteadyTime due{};           // when it counts as ended
        bool accepted = false;      // by the daemon
        bool retried = false;       // another session was lost with it
        bool freshSession = false;  // the session was opened for this line
    };
    class HangUpWatch;

    void advance();
    void give();
    void openSession(const SpeechdManner& manner);
    void retireSession();
    void hear(std::uint64_t session, const SessionEvent& event);
    void hearOfCurrent(SessionEvent::Kind kind);
    void loseSession(const std::string& reason, bool mayTryAgain);
    void onHangUp();
    void checkTimes();
    void setTimer();
    [[nodiscard]] SteadyTime endDue() const;  // of the current line, or of a session without one
    [[nodiscard]] std::optional<SteadyTime> answerDue() const;

    void end(void (SpeechSynthesizerDelegate::*ending)());
    void report(void (SpeechSynthesizerDelegate::*ending)()) const;
    void logFailure(const std::string& reason);
    void logOverdueLine();

    const SpeechTimes times_;
    const Logger logger_;
    const Environment& environment_;
    std::weak_ptr<SpeechSynthesizerDelegate> delegate_;
    MainQueue& mainQueue_;
    const std::shared_ptr<const bool> isAlive_ =
        std::make_shared<const bool>(true);  // for tasks of the queue
    QTimer timer_;
    std::optional<Current> current_;
    std::deque<Line> waiting_;
    LineNumber lastNumber_ = 0;
    std::unique_ptr<SpeechdSession> session_;
    std::unique_ptr<SpeechdSession> retired_;  // finishing what was asked of it
    std::unique_ptr<HangUpWatch> hangUp_;      // of the session, once it is open
    std::uint64_t sessionNumber_ = 0;
    SpeechdManner sessionManner_;
    SteadyTime idleSince_{};
    bool failureLogged_ = false;
    bool overdueLogged_ = false;
};

}  // namespace sonvara
