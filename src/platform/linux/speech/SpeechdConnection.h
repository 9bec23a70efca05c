// One connection to speech-dispatcher, as libspeechd sees it.
#pragma once

#include "platform/posix/Descriptors.h"

#include <cstddef>
#include <functional>
#include <libspeechd.h>
#include <memory>
#include <optional>
#include <string>

namespace sonvara {

/// How a connection speaks. What is absent is left to the user's own settings of the daemon.
struct SpeechdManner {
    std::optional<std::string> language;
    std::optional<int> rate;  ///< -100 slowest to 100 fastest
    bool operator==(const SpeechdManner&) const = default;
};

/// What the daemon tells of a message that it accepted.
enum class SpeechdEvent { begin, end, cancel };

/// Every operation may block for as long as the daemon likes: use it on a thread of its own. That
/// thread must have SIGPIPE blocked, because the library writes to a socket that may be broken.
class SpeechdConnection {
public:
    /// Called on the library's thread, perhaps before `say` has returned the message's number. Must
    /// not block and must not call the library, which would never return.
    using Listener = std::function<void(int message, SpeechdEvent event)>;

    /// Connects, starting the daemon if none runs. Null on failure, with its reason in `error`.
    static std::unique_ptr<SpeechdConnection> open(Listener listener, std::string& error);
    ~SpeechdConnection();

    /// To be called once, before the first line. Whether the daemon accepted it.
    [[nodiscard]] bool setUp(const SpeechdManner& manner);

    /// Hands over a text of one line; the daemon's number of the message, or -1 on failure.
    [[nodiscard]] int say(const std::string& text);

    /// Silences and forgets all that was said on this connection.
    void cancel();

    /// The connection's socket under another descriptor: with it, another thread sees or makes a hang-up
    /// whatever the library is doing.
    [[nodiscard]] FileDescriptor socket() const;

private:
    explicit SpeechdConnection(Listener listener) : listener_(std::move(listener)) {}
    bool connect(std::string& error);
    bool execute(const std::string& command);

    Listener listener_;
    std::optional<std::size_t> slot_;
    SPDConnection* connection_ = nullptr;
    FileDescriptor socket_;
};

}  // namespace sonvara
