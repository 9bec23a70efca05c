#include "platform/linux/speech/SpeechDispatcherSynthesizer.h"

#include "platform/linux/speech/LanguageTag.h"

#include <QSocketNotifier>

#include <algorithm>
#include <cmath>
#include <functional>
#include <sys/epoll.h>
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

/// Hears that the other end of a socket has hung up, and of nothing that can be read there: that is the
/// library's. The event loop knows no such watch, but a set of descriptors that holds one can be read when it is
/// so.
class SpeechDispatcherSynthesizer::HangUpWatch {
public:
    HangUpWatch(FileDescriptor socket, const std::function<void()>& hungUp) : socket_(std::move(socket))
    {
        epoll_event hangUp{};
        hangUp.events = EPOLLRDHUP;
        ::epoll_ctl(set_.get(), EPOLL_CTL_ADD, socket_.get(), &hangUp);
        QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this, hungUp] {
            // Later: it destroys the notifier, which must not happen in its own signal.
            QMetaObject::invokeMethod(&notifier_, hungUp, Qt::QueuedConnection);
        });
    }

private:
    FileDescriptor socket_;
    FileDescriptor set_{::epoll_create1(EPOLL_CLOEXEC)};
    QSocketNotifier notifier_{set_.get(), QSocketNotifier::Read};
};

SpeechDispatcherSynthesizer::SpeechDispatcherSynthesizer(MainQueue& mainQueue, SystemLog& log,
                                                         const Environment& environment, SpeechTimes times)
    : times_(times),
      logger_(log, "SpeechDispatcher"),
      environment_(environment),
      mainQueue_(mainQueue)
{
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] {
        checkTimes();
        advance();
    });
}

SpeechDispatcherSynthesizer::~SpeechDispatcherSynthesizer()
{
    stopSpeaking();
    if (session_) session_->close();
    const SteadyTime until = now() + times_.quitLimit;
    if (session_) session_->waitUntilClosed(until);
    if (retired_) retired_->waitUntilClosed(until);
}

std::string SpeechDispatcherSynthesizer::currentLanguageCode() const
{
    return languageTag(environment_.variables());
}

std::optional<SpeechVoice> SpeechDispatcherSynthesizer::voiceForLanguage(const std::string& code) const
{
    // The daemon does not follow the session's locale by itself, so the language has to be set.
    if (code == "en-US" || !isLanguageTag(code)) return std::nullopt;
    return SpeechVoice{code};
}

void SpeechDispatcherSynthesizer::setDelegate(std::weak_ptr<Delegate> delegate)
{
    delegate_ = std::move(delegate);
}

void SpeechDispatcherSynthesizer::speak(SpeechUtterance utterance)
{
    waiting_.push_back({++lastNumber_, spokenText(utterance.line), mannerOf(utterance)});
    advance();
}

void SpeechDispatcherSynthesizer::stopSpeaking()
{
    const auto waiting = std::exchange(waiting_, {});
    if (current_) {
        session_->cancel();
        end(&Delegate::didCancel);
    }
    for (auto count = waiting.size(); count > 0; --count) report(&Delegate::didCancel);
    setTimer();
}

/// Brings lines to the daemon until one is there; to be called after everything that happens.
void SpeechDispatcherSynthesizer::advance()
{
    while (!current_ || !current_->given) {
        if (current_) {
            give();
        } else if (waiting_.empty()) {
            break;
        } else {
            Line line = std::move(waiting_.front());
            waiting_.pop_front();
            if (line.text.empty())
                report(&Delegate::didFinish);
            else
                current_ = Current{std::move(line)};
        }
    }
    setTimer();
}

/// Gives the current line to the session, after opening one if need be.
void SpeechDispatcherSynthesizer::give()
{
    const Line& line = current_->line;
    if (session_ && sessionManner_ != line.manner) retireSession();
    try {
        if (!session_) openSession(line.manner);
    } catch (const std::system_error& error) {
        return loseSession(error.what(), false);
    }
    current_->given = true;
    // Until the daemon has the line, the answer limit rules.
    current_->due = now() + times_.answerLimit + longestTime(line.text, times_.speaking);
    session_->say(line.number, line.text);
}

void SpeechDispatcherSynthesizer::openSession(const SpeechdManner& manner)
{
    current_->freshSession = true;
    sessionManner_ = manner;
    ++sessionNumber_;
    session_ =
        std::make_unique<SpeechdSession>(manner, [this, number = sessionNumber_](const SessionEvent& event) {
            mainQueue_.post([this, weak = std::weak_ptr(isAlive_), number, event] {
                if (weak.lock()) hear(number, event);
            });
        });
}

/// Lets the session close when it has done what was asked of it, such as a cancel.
void SpeechDispatcherSynthesizer::retireSession()
{
    hangUp_.reset();
    session_->close();
    retired_ = std::move(session_);
}

void SpeechDispatcherSynthesizer::hear(std::uint64_t session, const SessionEvent& event)
{
    using Kind = SessionEvent::Kind;
    if (!session_ || session != sessionNumber_) return;
    if (event.kind == Kind::opened)
        hangUp_ = std::make_unique<HangUpWatch>(session_->socket(), [this] { onHangUp(); });
    else if (event.kind == Kind::failed)
        loseSession(event.reason, false);
    else if (event.kind == Kind::hungUp)
        onHangUp();
    else if (current_ && event.line == current_->line.number)
        hearOfCurrent(event.kind);
    advance();
}

void SpeechDispatcherSynthesizer::hearOfCurrent(SessionEvent::Kind kind)
{
    using Kind = SessionEvent::Kind;
    if (kind == Kind::refused) return loseSession("it refused a line", !current_->retried);
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
}

/// The session is of no more use. The current line is lost with it, unless it may be tried again.
void SpeechDispatcherSynthesizer::loseSession(const std::string& reason, bool mayTryAgain)
{
    hangUp_.reset();
    session_.reset();
    if (!current_) return;
    if (mayTryAgain) {
        current_->retried = true;
        current_->given = false;
        return;
    }
    logFailure(reason);
    end(&Delegate::didFinish);
}

/// A daemon that was about to leave as it got the line has not spoken it; its successor will.
void SpeechDispatcherSynthesizer::onHangUp()
{
    loseSession("it hung up", current_ && !current_->accepted && !current_->retried);
    advance();
}

void SpeechDispatcherSynthesizer::checkTimes()
{
    const SteadyTime time = now();
    if (const auto due = answerDue(); due && *due <= time) {
        const bool unsent = session_->holdsUnsentLine();
        loseSession("it does not answer", unsent && !current_->freshSession);
    } else if (time < endDue()) {
        return;  // an answer had been awaited, and has come
    } else if (current_) {
        logOverdueLine();
        session_->cancel();
        end(&Delegate::didFinish);
    } else {
        retireSession();
    }
}

/// For when `checkTimes` next has something to do: only while there is a session.
void SpeechDispatcherSynthesizer::setTimer()
{
    if (!session_) return timer_.stop();
    const SteadyTime due = endDue();
    const auto left = std::min(due, answerDue().value_or(due)) - now();
    timer_.start(std::max(std::chrono::ceil<std::chrono::milliseconds>(left), {}));
}

SteadyTime SpeechDispatcherSynthesizer::endDue() const
{
    return current_ ? current_->due : idleSince_ + times_.quietWhile;
}

std::optional<SteadyTime> SpeechDispatcherSynthesizer::answerDue() const
{
    const auto since = session_->waitingSince();
    return since ? std::optional(*since + times_.answerLimit) : std::nullopt;
}

void SpeechDispatcherSynthesizer::end(void (Delegate::*ending)())
{
    current_.reset();
    idleSince_ = now();
    report(ending);
}

void SpeechDispatcherSynthesizer::report(void (Delegate::*ending)()) const
{
    if (const auto delegate = delegate_.lock()) ((*delegate).*ending)();
}

/// A daemon that is missing would otherwise fill the log, a message for each track.
void SpeechDispatcherSynthesizer::logFailure(const std::string& reason)
{
    if (std::exchange(failureLogged_, true)) return;
    logger_.error(
        {{"No line can be spoken, because the speech daemon (speech-dispatcher) cannot be used: " + reason}});
}

/// Without a sound server the daemon begins a line and never comes to its end, which nothing else tells.
void SpeechDispatcherSynthesizer::logOverdueLine()
{
    if (std::exchange(overdueLogged_, true)) return;
    logger_.error(
        {{"A line was given to the speech daemon and never came to its end: is a sound server running?"}});
}

}  // namespace sonvara
