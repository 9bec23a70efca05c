#include "platform/linux/speech/SpeechdConnection.h"

#include "platform/linux/speech/LanguageTag.h"

#include <array>
#include <atomic>
#include <charconv>
#include <cstdlib>
#include <fcntl.h>
#include <pthread.h>
#include <string_view>
#include <sys/socket.h>
#include <utility>

namespace sonvara {

namespace {

// The library's callbacks carry no user data, and numbers of clients and messages repeat when a new
// daemon takes over. So each connection has a function of its own to be called, one per slot. The
// number of slots also bounds how many connections can be stuck in a daemon that does not answer.
constexpr std::size_t slotCount = 8;
std::array<std::atomic<const SpeechdConnection::Listener*>, slotCount> listeners{};

std::optional<std::size_t> takeSlot(const SpeechdConnection::Listener& listener)
{
    for (std::size_t slot = 0; slot < slotCount; ++slot) {
        const SpeechdConnection::Listener* none = nullptr;
        if (listeners[slot].compare_exchange_strong(none, &listener)) return slot;
    }
    return std::nullopt;
}

/// Closing a connection cancels the library's thread; what a listener holds must survive that.
class NoCancellation {
public:
    NoCancellation() { ::pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &before_); }
    NoCancellation(const NoCancellation&) = delete;
    NoCancellation& operator=(const NoCancellation&) = delete;
    ~NoCancellation() { ::pthread_setcancelstate(before_, nullptr); }

private:
    int before_ = PTHREAD_CANCEL_ENABLE;
};

template <std::size_t slot>
void onEvent(std::size_t message, std::size_t /*client*/, SPDNotificationType type)
{
    const NoCancellation guard;
    const SpeechdConnection::Listener& listener = *listeners[slot].load();
    const int number = static_cast<int>(message);
    if (type == SPD_EVENT_BEGIN) listener(number, SpeechdEvent::begin);
    if (type == SPD_EVENT_END) listener(number, SpeechdEvent::end);
    if (type == SPD_EVENT_CANCEL) listener(number, SpeechdEvent::cancel);
}

template <std::size_t... slots>
constexpr std::array<SPDCallback, slotCount> makeCallbacks(std::index_sequence<slots...>)
{
    return {onEvent<slots>...};
}

constexpr auto callbacks = makeCallbacks(std::make_index_sequence<slotCount>());

/// A text that the library allocated, and its release.
using LibraryText = std::unique_ptr<char, decltype(&std::free)>;

/// "225-<number>" is the first line of the answer to a text that was accepted.
int messageNumber(std::string_view answer)
{
    constexpr std::string_view accepted = "225-";
    int number = -1;
    if (answer.starts_with(accepted))
        std::from_chars(answer.data() + accepted.size(), answer.data() + answer.size(), number);
    return number;
}

}  // namespace

std::unique_ptr<SpeechdConnection> SpeechdConnection::open(Listener listener, std::string& error)
{
    std::unique_ptr<SpeechdConnection> connection(new SpeechdConnection(std::move(listener)));
    return connection->connect(error) ? std::move(connection) : nullptr;
}

bool SpeechdConnection::connect(std::string& error)
{
    slot_ = takeSlot(listener_);
    if (!slot_) {
        error = "earlier connections are still waiting for its answer";
        return false;
    }
    using Address = std::unique_ptr<SPDConnectionAddress, decltype(&SPDConnectionAddress__free)>;
    char* reason = nullptr;
    const Address address(spd_get_default_address(&reason), &SPDConnectionAddress__free);
    const bool startDaemon = true;
    if (address)
        connection_ =
            spd_open2("sonvara", "main", nullptr, SPD_MODE_THREADED, address.get(), startDaemon, &reason);
    const LibraryText owned(reason, &std::free);
    if (!connection_) {
        error = reason ? reason : "no reason given";
        return false;
    }
    // The library leaves its socket open to child processes. And it closes it by itself when the daemon hangs
    // up, after which the number may belong to another file.
    ::fcntl(connection_->socket, F_SETFD, FD_CLOEXEC);
    socket_ = FileDescriptor(::fcntl(connection_->socket, F_DUPFD_CLOEXEC, 0));
    return true;
}

bool SpeechdConnection::setUp(const SpeechdManner& manner)
{
    const SPDCallback callback = callbacks[*slot_];
    connection_->callback_begin = connection_->callback_end = connection_->callback_cancel = callback;
    for (const char* event : {"BEGIN", "END", "CANCEL"})
        if (!execute(std::string("SET SELF NOTIFICATION ") + event + " on")) return false;
    // Lines of this priority queue behind each other; those of the usual one, "text", drop each other.
    if (!execute("SET SELF PRIORITY message")) return false;
    // A refusal of the two wishes is no failure: the line is then spoken in the default manner.
    if (manner.language && isLanguageTag(*manner.language)) execute("SET SELF LANGUAGE " + *manner.language);
    if (manner.rate) execute("SET SELF RATE " + std::to_string(*manner.rate));
    return true;
}

/// The library's own functions for these commands write into buffers that all connections share.
bool SpeechdConnection::execute(const std::string& command)
{
    return spd_execute_command(connection_, command.c_str()) == 0;
}

SpeechdConnection::~SpeechdConnection()
{
    if (connection_) {
        // Lets the library's reading thread end by itself; closing alone would cancel it wherever it is.
        ::shutdown(socket_.get(), SHUT_RDWR);
        spd_close(connection_);
    }
    if (slot_) listeners[*slot_] = nullptr;
}

/// `spd_say` sets the priority anew for each line, and waits for the answer first.
int SpeechdConnection::say(const std::string& text)
{
    if (!execute("SPEAK")) return -1;
    const bool looksLikeTheEnd = text.starts_with('.');
    const std::string data = (looksLikeTheEnd ? "." : "") + text + "\r\n.\r\n";
    const LibraryText answer(spd_send_data(connection_, data.c_str(), SPD_WAIT_REPLY), &std::free);
    return answer ? messageNumber(answer.get()) : -1;
}

void SpeechdConnection::cancel()
{
    spd_cancel(connection_);
}

FileDescriptor SpeechdConnection::socket() const
{
    return FileDescriptor(::fcntl(socket_.get(), F_DUPFD_CLOEXEC, 0));
}

}  // namespace sonvara
