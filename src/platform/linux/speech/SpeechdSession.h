// A connection to speech-dispatcher on a thread of its own, which can be left behind if it hangs.
#pragma once

#include "platform/linux/speech/SpeechdConnection.h"
#include "platform/posix/Descriptors.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace sonvara {

using LineNumber = std::uint64_t;
using SteadyTime = std::chrono::steady_clock::time_point;

/// What a session tells. A line is accepted or refused, then, if accepted, begun, then ended or
/// cancelled; the last ones may be missing. A session that could not connect, was hung up on, or
/// refused a line is of no more use.
struct SessionEvent {
    enum class Kind { opened, failed, hungUp, accepted, refused, begun, ended, cancelled };
    Kind kind;
    LineNumber line = 0;
    std::string reason = {};  ///< of a failure to connect
};

/// At most one line at a time may be under way in a session. No operation blocks, except
/// `waitUntilClosed`.
class SpeechdSession {
public:
    /// Called on threads of the session, under a lock of it: must only pass the event on.
    using Listener = std::function<void(const SessionEvent&)>;

    /// Begins to connect. Throws std::system_error if there can be no more threads.
    SpeechdSession(SpeechdManner manner, Listener listener);

    /// Leaves the session behind: hangs up, and lets its thread end when the library lets it. No
    /// event comes after this.
    ~SpeechdSession();

    SpeechdSession(const SpeechdSession&) = delete;
    SpeechdSession& operator=(const SpeechdSession&) = delete;

    void say(LineNumber line, std::string text);

    /// Forgets the line if the library does not have it yet, else silences it.
    void cancel();

    /// Closes the connection when everything asked for before is done.
    void close();

    /// Waits for that, not longer than `until`.
    void waitUntilClosed(SteadyTime until);

    /// Since when the library has owed an answer; absent if it owes none.
    [[nodiscard]] std::optional<SteadyTime> waitingSince() const;

    /// Whether a line is there that the library does not have yet.
    [[nodiscard]] bool holdsUnsentLine() const;

    /// The socket under another descriptor, while the session is open; for watching for a hang-up.
    [[nodiscard]] FileDescriptor socket() const;

private:
    class Worker;
    std::shared_ptr<Worker> worker_;
};

}  // namespace sonvara
