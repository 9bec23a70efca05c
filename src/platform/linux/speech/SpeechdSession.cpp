#include "platform/linux/speech/SpeechdSession.h"

#include <algorithm>
#include <condition_variable>
#include <csignal>
#include <deque>
#include <fcntl.h>
#include <mutex>
#include <sys/socket.h>
#include <thread>
#include <utility>
#include <vector>

namespace sonvara {

namespace {

struct Command {
    enum class Kind { say, cancel, close };
    Kind kind;
    LineNumber line = 0;
    std::string text = {};
};

void blockBrokenPipeSignal()
{
    sigset_t signals;
    ::sigemptyset(&signals);
    ::sigaddset(&signals, SIGPIPE);
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

SessionEvent::Kind kindOf(SpeechdEvent event)
{
    switch (event) {
    case SpeechdEvent::begin: return SessionEvent::Kind::begun;
    case SpeechdEvent::end: return SessionEvent::Kind::ended;
    case SpeechdEvent::cancel: break;
    }
    return SessionEvent::Kind::cancelled;
}

}  // namespace

/// Shared by the session's owner, its thread and the library's thread; lives as long as the last.
class SpeechdSession::Worker {
public:
    Worker(SpeechdManner manner, Listener listener)
        : manner_(std::move(manner)),
          listener_(std::move(listener)),
          waitingSince_(now())
    {}

    void run();

    void push(Command command);
    void cancel();
    void abandon();
    void waitUntilClosed(SteadyTime until);
    std::optional<SteadyTime> waitingSince() const;
    bool holdsUnsentLine() const;
    FileDescriptor socket() const;

private:
    struct MessageEvent {
        int message;
        SpeechdEvent event;
    };

    static SteadyTime now() { return std::chrono::steady_clock::now(); }
    std::unique_ptr<SpeechdConnection> open();
    void publishSocket(FileDescriptor socket);
    Command next();
    void say(SpeechdConnection& connection, const Command& command);
    void hear(MessageEvent heard);
    void pass(const MessageEvent& heard) const;
    void tell(const SessionEvent& event) const;

    const SpeechdManner manner_;
    const Listener listener_;

    mutable std::mutex mutex_;  // for everything below
    std::condition_variable changed_;
    std::deque<Command> commands_;
    std::optional<SteadyTime> waitingSince_;
    FileDescriptor socket_;
    bool abandoned_ = false;
    bool closed_ = false;
    LineNumber line_ = 0;  // the line last given to the library, and its message there
    int message_ = -1;
    bool saying_ = false;
    std::vector<MessageEvent> early_;  // heard while the library has not told the message's number yet
};

void SpeechdSession::Worker::run()
{
    blockBrokenPipeSignal();
    auto connection = open();
    while (connection) {
        const Command command = next();
        if (command.kind == Command::Kind::say) say(*connection, command);
        if (command.kind == Command::Kind::cancel) connection->cancel();
        if (command.kind == Command::Kind::close) connection = nullptr;
    }
    const std::lock_guard lock(mutex_);
    closed_ = true;
    changed_.notify_all();
}

std::unique_ptr<SpeechdConnection> SpeechdSession::Worker::open()
{
    std::string error;
    auto connection =
        SpeechdConnection::open([this](int message, SpeechdEvent event) { hear({message, event}); }, error);
    if (connection) {
        publishSocket(connection->socket());
        if (connection->setUp(manner_)) return connection;
    }
    const std::lock_guard lock(mutex_);
    tell({.kind = connection ? SessionEvent::Kind::hungUp : SessionEvent::Kind::failed, .reason = error});
    return nullptr;
}

void SpeechdSession::Worker::publishSocket(FileDescriptor socket)
{
    const std::lock_guard lock(mutex_);
    socket_ = std::move(socket);
    if (abandoned_) ::shutdown(socket_.get(), SHUT_RDWR);
    tell({SessionEvent::Kind::opened});
}

/// Waits for the next command; `close` when the session was abandoned.
Command SpeechdSession::Worker::next()
{
    std::unique_lock lock(mutex_);
    if (commands_.empty()) waitingSince_.reset();
    changed_.wait(lock, [this] { return abandoned_ || !commands_.empty(); });
    if (abandoned_) return {Command::Kind::close};
    Command command = std::move(commands_.front());
    commands_.pop_front();
    waitingSince_ = now();
    saying_ = command.kind == Command::Kind::say;
    return command;
}

void SpeechdSession::Worker::say(SpeechdConnection& connection, const Command& command)
{
    const int message = connection.say(command.text);
    const std::lock_guard lock(mutex_);
    line_ = command.line;
    message_ = message;
    saying_ = false;
    tell({message < 0 ? SessionEvent::Kind::refused : SessionEvent::Kind::accepted, line_});
    for (const MessageEvent& heard : std::exchange(early_, {})) pass(heard);
}

void SpeechdSession::Worker::hear(MessageEvent heard)
{
    const std::lock_guard lock(mutex_);
    if (saying_)
        early_.push_back(heard);
    else
        pass(heard);
}

void SpeechdSession::Worker::pass(const MessageEvent& heard) const
{
    if (heard.message == message_) tell({kindOf(heard.event), line_});
}

void SpeechdSession::Worker::tell(const SessionEvent& event) const
{
    if (!abandoned_) listener_(event);
}

void SpeechdSession::Worker::push(Command command)
{
    {
        const std::lock_guard lock(mutex_);
        commands_.push_back(std::move(command));
        if (!waitingSince_) waitingSince_ = now();
    }
    changed_.notify_all();
}

void SpeechdSession::Worker::cancel()
{
    const std::lock_guard lock(mutex_);
    const auto unsent =
        std::erase_if(commands_, [](const Command& c) { return c.kind == Command::Kind::say; });
    if (unsent > 0) return;
    commands_.push_back({Command::Kind::cancel});
    if (!waitingSince_) waitingSince_ = now();
    changed_.notify_all();
}

void SpeechdSession::Worker::abandon()
{
    const std::lock_guard lock(mutex_);
    abandoned_ = true;
    ::shutdown(socket_.get(), SHUT_RDWR);  // does nothing before there is one
    changed_.notify_all();
}

void SpeechdSession::Worker::waitUntilClosed(SteadyTime until)
{
    std::unique_lock lock(mutex_);
    changed_.wait_until(lock, until, [this] { return closed_; });
}

std::optional<SteadyTime> SpeechdSession::Worker::waitingSince() const
{
    const std::lock_guard lock(mutex_);
    return waitingSince_;
}

bool SpeechdSession::Worker::holdsUnsentLine() const
{
    const std::lock_guard lock(mutex_);
    return std::ranges::any_of(commands_, [](const Command& c) { return c.kind == Command::Kind::say; });
}

FileDescriptor SpeechdSession::Worker::socket() const
{
    const std::lock_guard lock(mutex_);
    return FileDescriptor(::fcntl(socket_.get(), F_DUPFD_CLOEXEC, 0));
}

SpeechdSession::SpeechdSession(SpeechdManner manner, Listener listener)
    : worker_(std::make_shared<Worker>(std::move(manner), std::move(listener)))
{
    std::thread([worker = worker_] { worker->run(); }).detach();
}

SpeechdSession::~SpeechdSession()
{
    worker_->abandon();
}

void SpeechdSession::say(LineNumber line, std::string text)
{
    worker_->push({Command::Kind::say, line, std::move(text)});
}

void SpeechdSession::cancel()
{
    worker_->cancel();
}

void SpeechdSession::close()
{
    worker_->push({Command::Kind::close});
}

void SpeechdSession::waitUntilClosed(SteadyTime until)
{
    worker_->waitUntilClosed(until);
}

std::optional<SteadyTime> SpeechdSession::waitingSince() const
{
    return worker_->waitingSince();
}

bool SpeechdSession::holdsUnsentLine() const
{
    return worker_->holdsUnsentLine();
}

FileDescriptor SpeechdSession::socket() const
{
    return worker_->socket();
}

}  // namespace sonvara
