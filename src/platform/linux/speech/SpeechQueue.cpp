#include "platform/linux/speech/SpeechQueue.h"

#include <algorithm>
#include <cmath>
#include <system_error>
#include <utility>

namespace sonvara {

namespace {

using Delegate = SpeechSynthesizerDelegate;

SteadyTime now()
{
    return std::chrono::steady_clock::now();
}

/// The usual rate and the default voice are no settings at all: they are what the user chose.
SpeechdManner mannerOf(const SpeechUtterance& utterance)
{
    constexpr double usual = 0.5;
    SpeechdManner manner;
    if (utterance.voice) manner.language = utterance.voice->identifier;
    if (utterance.rate != usual && !std::isnan(utterance.rate))
        manner.rate = static_cast<int>(std::lround((std::clamp(utterance.rate, 0.0, 1.0) - usual) * 200));
    return manner;
}

}  // namespace

SpeechQueue::SpeechQueue(SystemLog& log, SpeechTimes times)
    : times_(times),
      logger_(log, "Speech"),
      thread_([this] { run(); })
{}

SpeechQueue::~SpeechQueue()
{
    loop_->post([this] { quit(); });
    thread_.join();
    const SteadyTime until = now() + times_.quitLimit;
    if (session_) session_->waitUntilClosed(until);
    if (retired_) retired_->waitUntilClosed(until);
}

void SpeechQueue::setDelegate(std::weak_ptr<Delegate> delegate)
{
    loop_->post([this, delegate = std::move(delegate)] { delegate_ = delegate; });
}

void SpeechQueue::speak(SpeechUtterance utterance)
{
    loop_->post([this, utterance = std::move(utterance)] { add(utterance); });
}

void SpeechQueue::stop()
{
    loop_->post([this] { stopAll(); });
}

void SpeechQueue::run()
{
    while (!quitting_) {
        const int peer = session_ ? session_->socket() : -1;
        const std::uint64_t watched = sessionNumber_;
        const bool hungUp = loop_->wait(peer, nextTime());
        if (hungUp && session_ && watched == sessionNumber_) onHangUp();
        checkTimes();
    }
}

void SpeechQueue::add(const SpeechUtterance& utterance)
{
    waiting_.push_back({++lastNumber_, spokenText(utterance.line), mannerOf(utterance)});
    startNext();
}

void SpeechQueue::stopAll()
{
    if (current_) {
        session_->cancel();
        end(&Delegate::didCancel);
    }
    for (; !waiting_.empty(); waiting_.pop_front()) report(&Delegate::didCancel);
}

void SpeechQueue::quit()
{
    stopAll();
    if (session_) session_->close();
    quitting_ = true;
}

void SpeechQueue::startNext()
{
    while (!current_ && !waiting_.empty()) {
        Line line = std::move(waiting_.front());
        waiting_.pop_front();
        if (line.text.empty()) {
            report(&Delegate::didFinish);
        } else {
            current_ = Current{std::move(line)};
            give();
        }
    }
}

/// Gives the current line to the session, after opening one if need be.
void SpeechQueue::give()
{
    const Line& line = current_->line;
    if (session_ && sessionManner_ != line.manner) retireSession();
    try {
        if (!session_) openSession(line.manner);
    } catch (const std::system_error& error) {
        return onSessionLost(error.what(), false);
    }
    // Until the daemon has the line, the answer limit rules.
    current_->due = now() + times_.answerLimit + longestTime(line.text, times_.speaking);
    session_->say(line.number, line.text);
}

void SpeechQueue::openSession(const SpeechdManner& manner)
{
    current_->freshSession = true;
    sessionManner_ = manner;
    ++sessionNumber_;
    session_ = std::make_unique<SpeechdSession>(
        manner, [this, loop = loop_, number = sessionNumber_](const SessionEvent& event) {
            loop->post([this, number, event] { hear(number, event); });
        });
}

/// Lets the session close when it has done what was asked of it, such as a cancel.
void SpeechQueue::retireSession()
{
    session_->close();
    retired_ = std::move(session_);
}

void SpeechQueue::hear(std::uint64_t session, const SessionEvent& event)
{
    if (!session_ || session != sessionNumber_) return;
    if (event.kind == SessionEvent::Kind::failed) return onSessionLost(event.reason, false);
    if (event.kind == SessionEvent::Kind::hungUp) return onHangUp();
    if (current_ && event.line == current_->line.number) hearOfCurrent(event.kind);
}

void SpeechQueue::hearOfCurrent(SessionEvent::Kind kind)
{
    using Kind = SessionEvent::Kind;
    if (kind == Kind::refused) return onSessionLost("it refused a line", !current_->retried);
    if (kind == Kind::accepted) {
        current_->accepted = true;
        failureLogged_ = false;
    }
    // Another program's speech may come first, so the time to speak begins anew with the line itself.
    if (kind == Kind::accepted || kind == Kind::begun)
        current_->due = now() + longestTime(current_->line.text, times_.speaking);
    if (kind == Kind::ended) {
        overdueLogged_ = false;
        end(&Delegate::didFinish);
    }
    if (kind == Kind::cancelled) end(&Delegate::didCancel);
    startNext();
}

/// The session is of no more use. The current line is lost with it, unless it may be tried again.
void SpeechQueue::onSessionLost(const std::string& reason, bool mayTryAgain)
{
    session_.reset();
    if (!current_) return;
    if (mayTryAgain) {
        current_->retried = true;
        return give();
    }
    logFailure(reason);
    end(&Delegate::didFinish);
    startNext();
}

/// A daemon that was about to leave as it got the line has not spoken it; its successor will.
void SpeechQueue::onHangUp()
{
    onSessionLost("it hung up", current_ && !current_->accepted && !current_->retried);
}

void SpeechQueue::checkTimes()
{
    const SteadyTime time = now();
    if (const auto due = answerDue(); due && *due <= time) {
        const bool unsent = session_->holdsUnsentLine();
        onSessionLost("it does not answer", unsent && current_ && !current_->freshSession);
    } else if (current_ && current_->due <= time) {
        logOverdueLine();
        session_->cancel();
        end(&Delegate::didFinish);
        startNext();
    } else if (!current_ && session_ && idleSince_ + times_.quietWhile <= time) {
        retireSession();
    }
}

/// When `checkTimes` next has something to do.
std::optional<SteadyTime> SpeechQueue::nextTime() const
{
    if (!session_) return std::nullopt;
    const SteadyTime due = current_ ? current_->due : idleSince_ + times_.quietWhile;
    return std::min(due, answerDue().value_or(due));
}

std::optional<SteadyTime> SpeechQueue::answerDue() const
{
    const auto since = session_ ? session_->waitingSince() : std::nullopt;
    return since ? std::optional(*since + times_.answerLimit) : std::nullopt;
}

void SpeechQueue::end(void (Delegate::*ending)())
{
    current_.reset();
    idleSince_ = now();
    report(ending);
}

void SpeechQueue::report(void (Delegate::*ending)()) const
{
    if (const auto delegate = delegate_.lock()) ((*delegate).*ending)();
}

/// A daemon that is missing would otherwise fill the log, a message for each track.
void SpeechQueue::logFailure(const std::string& reason)
{
    if (failureLogged_) return;
    failureLogged_ = true;
    logger_.error(
        {{"No line can be spoken, because the speech daemon (speech-dispatcher) cannot be used: " + reason}});
}

/// Without a sound server the daemon begins a line and never comes to its end, which nothing else tells.
void SpeechQueue::logOverdueLine()
{
    if (std::exchange(overdueLogged_, true)) return;
    logger_.error(
        {{"A line was given to the speech daemon and never came to its end: is a sound server running?"}});
}

}  // namespace sonvara
