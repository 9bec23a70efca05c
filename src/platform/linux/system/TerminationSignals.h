// The signals by which the system asks a program to end.
#pragma once

#include <QSocketNotifier>
#include <array>
#include <csignal>
#include <functional>
#include <memory>

namespace sonvara {

/// While it lives, SIGTERM, SIGINT and SIGHUP call `handler` on the main thread's event loop. Each has
/// its default effect when it comes again, so that a program that hangs can still be ended. A signal
/// that was ignored stays so. At most one object at a time, on the main thread.
class TerminationSignals {
public:
    explicit TerminationSignals(std::function<void()> handler);
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;
    ~TerminationSignals();

private:
    static void catchSignal(int number, struct sigaction& previous);

    std::array<int, 2> pipe_{-1, -1};
    std::unique_ptr<QSocketNotifier> notifier_;
    std::array<struct sigaction, 3> previous_{};
};

}  // namespace sonvara
