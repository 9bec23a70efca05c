// The book of lines: which one is at the speech daemon, which wait, and when one counts as ended.
#pragma once

#include "platform/linux/speech/LineText.h"
#include "platform/linux/speech/SpeechdSession.h"
#include "ports/SpeechSynthesizer.h"
#include "ports/SystemLog.h"
#include "support/SpeakingTime.h"

#include <chrono>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <thread>

namespace sonvara {

struct SpeechTimes {
    SpeakingTime speaking;
    std::chrono::milliseconds answerLimit{8000};  ///< for one call of the library; starting the daemon is one
    std::chrono::milliseconds quietWhile{30000};  ///< after the last line, before the connection is closed
    std::chrono::milliseconds quitLimit{500};     ///< for silencing the current line when the queue ends
};

/// Gives the lines to the daemon one at a time, so that a line which waits can still be taken back,
/// and sees to it that each comes to exactly one end, whatever the daemon does.
class SpeechQueue {
public:
    /// Throws std::system_error if there can be no more descriptors or threads. `log` outlives the queue.
    SpeechQueue(SystemLog& log, SpeechTimes times);

    /// Cancels all lines. Blocks for the quit limit at most.
    ~SpeechQueue();

    SpeechQueue(const SpeechQueue&) = delete;
    SpeechQueue& operator=(const SpeechQueue&) = delete;

    // Any thread; these return at once and take effect in order. The delegate hears on the queue's
    // own thread.
    void setDelegate(std::weak_ptr<SpeechSynthesizerDelegate> delegate);
    void speak(SpeechUtterance utterance);
    void stop();

private:
    struct Line {
        LineNumber number;
        std::string text;
        SpeechdManner manner;
    };
    /// The line that was given to the session.
    struct Current {
        Line line;
        SteadyTime due{};           // when it counts as ended
        bool accepted = false;      // by the daemon
        bool retried = false;       // another session was lost with it
        bool freshSession = false;  // the session was opened for this line
    };

    void run();
    void add(const SpeechUtterance& utterance);
    void stopAll();
    void quit();

    void startNext();
    void give();
    void openSession(const SpeechdManner& manner);
    void retireSession();
    void hear(std::uint64_t session, const SessionEvent& event);
    void hearOfCurrent(SessionEvent::Kind kind);
    void onSessionLost(const std::string& reason, bool mayTryAgain);
    void onHangUp();
    void checkTimes();
    [[nodiscard]] std::optional<SteadyTime> nextTime() const;
    [[nodiscard]] std::optional<SteadyTime> answerDue() const;

    void end(void (SpeechSynthesizerDelegate::*ending)());
    void report(void (SpeechSynthesizerDelegate::*ending)()) const;
    void logFailure(const std::string& reason);
    void logOverdueLine();

    const SpeechTimes times_;
    const Logger logger_;
    const std::shared_ptr<TaskLoop> loop_ = std::make_shared<TaskLoop>();

    // Everything below belongs to the queue's thread.
    std::weak_ptr<SpeechSynthesizerDelegate> delegate_;
    std::optional<Current> current_;
    std::deque<Line> waiting_;
    LineNumber lastNumber_ = 0;
    std::unique_ptr<SpeechdSession> session_;
    std::unique_ptr<SpeechdSession> retired_;  // finishing what was asked of it
    std::uint64_t sessionNumber_ = 0;
    SpeechdManner sessionManner_;
    SteadyTime idleSince_{};
    bool failureLogged_ = false;
    bool overdueLogged_ = false;
    bool quitting_ = false;

    std::thread thread_;
};

}  // namespace sonvara
