#include "platform/macos/speech/SpokenLines.h"

#include <utility>

namespace sonvara {

void SpokenLines::speak(SpeechUtterance utterance)
{
    waiting_.push_back(std::move(utterance));
    if (state_ == State::silent) startNext();
}

void SpokenLines::stop()
{
    const auto cancelled = waiting_.size() + (state_ == State::speaking ? 1 : 0);
    waiting_.clear();
    if (state_ == State::speaking) cut();
    for (std::size_t i = 0; i < cancelled; ++i) report(&SpeechSynthesizerDelegate::didCancel);
}

void SpokenLines::ended(LineNumber number, Ending ending)
{
    if (number != current_ || state_ == State::silent) return;
    const bool isNews = state_ == State::speaking;
    startNext();
    if (isNews) report(ending);
}

void SpokenLines::startNext()
{
    state_ = waiting_.empty() ? State::silent : State::speaking;
    if (state_ == State::silent) return;
    const auto next = std::move(waiting_.front());
    waiting_.pop_front();
    ++current_;
    expectEndWithin(longestTime(next.line, times_.speaking));
    speaker_.speak(current_, next);
}

void SpokenLines::cut()
{
    state_ = State::cutting;
    expectEndWithin(times_.cutting);
    speaker_.cut();
}

void SpokenLines::expectEndWithin(std::chrono::milliseconds time)
{
    after_(time, [weak = weak_from_this(), moment = ++moment_] {
        const auto self = weak.lock();
        if (self && self->moment_ == moment) self->overdue();
    });
}

void SpokenLines::overdue()
{
    if (state_ == State::speaking) {
        cut();
        report(&SpeechSynthesizerDelegate::didFinish);
    } else if (state_ == State::cutting) {
        startNext();
    }
}

void SpokenLines::report(Ending ending) const
{
    if (const auto delegate = delegate_.lock()) ((*delegate).*ending)();
}

}  // namespace sonvara
