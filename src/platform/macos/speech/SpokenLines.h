// The book of lines: which one the system's voice has, which wait, and when one counts as ended.
#pragma once

#include "ports/SpeechSynthesizer.h"
#include "support/SpeakingTime.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>

namespace sonvara {

using LineNumber = std::uint64_t;

/// What speaks, one line at a time. Main thread.
class LineSpeaker {
public:
    virtual ~LineSpeaker() = default;
    virtual void speak(LineNumber number, const SpeechUtterance& utterance) = 0;
    virtual void cut() = 0;
};

/// Gives the voice one line at a time and sees to it that each comes to exactly one end, whatever the voice reports:
/// nothing, a line that was cut, or a cut that it has not carried out yet. The states:
///
///   silent    the voice has nothing.
///   speaking  it has a line, and time for it.
///   cutting   it was told to cut its line.
///
/// | state    | event                  | what follows
/// |----------|------------------------|--------------------------------------------------------------
/// | silent   | speak                  | the line is given to the voice: speaking
/// | speaking | the line's end         | it is passed on; the next line, or silent
/// | speaking | its time is over       | it counts as finished: cutting
/// | speaking | stop                   | every line counts as cancelled, the others never begin: cutting
/// | cutting  | the line's end, or its | the next line, or silent: a voice that is given a line before it has cut
/// |          | time is over           | the last one may swallow it
/// | any      | speak                  | the line waits, unless silent
/// | any      | another line's end     | nothing: it was passed on when it was stopped
///
/// Main thread only.
class SpokenLines : public std::enable_shared_from_this<SpokenLines> {
public:
    struct Times {
        SpeakingTime speaking;
        std::chrono::milliseconds cutting{500};
    };
    /// Has `task` run on the main thread when `delay` has passed.
    using After = std::function<void(std::chrono::milliseconds delay, std::function<void()> task)>;
    using Ending = void (SpeechSynthesizerDelegate::*)();

    /// `speaker` must outlive this. To be held by a shared pointer.
    SpokenLines(LineSpeaker& speaker, After after, const Times& times)
        : speaker_(speaker),
          after_(std::move(after)),
          times_(times)
    {}

    void setDelegate(std::weak_ptr<SpeechSynthesizerDelegate> delegate) { delegate_ = std::move(delegate); }
    void speak(SpeechUtterance utterance);
    void stop();
    /// The voice reports the end of a line.
    void ended(LineNumber number, Ending ending);

private:
    enum class State { silent, speaking, cutting };

    void startNext();
    void cut();
    void expectEndWithin(std::chrono::milliseconds time);
    void overdue();
    void report(Ending ending) const;

    LineSpeaker& speaker_;
    const After after_;
    const Times times_;
    std::weak_ptr<SpeechSynthesizerDelegate> delegate_;
    State state_ = State::silent;
    std::deque<SpeechUtterance> waiting_;
    LineNumber current_ = 0;    ///< the last one that was given to the voice
    std::uint64_t moment_ = 0;  ///< which time is the one that counts
};

}  // namespace sonvara
