#include "platform/linux/system/TerminationSignals.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace sonvara {

namespace {

constexpr std::array caughtSignals{SIGTERM, SIGINT, SIGHUP};

// All that a signal handler may touch.
volatile int signalPipe = -1;

extern "C" void wakeMainThread(int /*number*/)
{
    const int savedError = errno;
    const char byte = 0;
    [[maybe_unused]] const auto written = ::write(signalPipe, &byte, 1);  // a full pipe wakes as well
    errno = savedError;
}

}  // namespace

TerminationSignals::TerminationSignals(std::function<void()> handler)
{
    if (::pipe2(pipe_.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;  // then the signals end us at once
    signalPipe = pipe_[1];
    notifier_ = std::make_unique<QSocketNotifier>(pipe_[0], QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [read = pipe_[0], handler = std::move(handler)] {
                         char byte = 0;
                         while (::read(read, &byte, 1) > 0) {
                         }
                         handler();
                     });
    for (std::size_t i = 0; i < caughtSignals.size(); ++i) catchSignal(caughtSignals[i], previous_[i]);
}

void TerminationSignals::catchSignal(int number, struct sigaction& previous)
{
    ::sigaction(number, nullptr, &previous);
    if (previous.sa_handler == SIG_IGN) return;
    struct sigaction action{};
    action.sa_handler = wakeMainThread;
    action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    ::sigaction(number, &action, nullptr);
}

TerminationSignals::~TerminationSignals()
{
    if (!notifier_) return;
    for (std::size_t i = 0; i < caughtSignals.size(); ++i)
        ::sigaction(caughtSignals[i], &previous_[i], nullptr);
    notifier_.reset();
    for (const int end : pipe_) ::close(end);
}

}  // namespace sonvara
