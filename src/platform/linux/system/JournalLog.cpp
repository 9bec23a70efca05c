#include "platform/linux/system/JournalLog.h"

#include "platform/linux/system/LogText.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>
#include <utility>

namespace sonvara {

namespace {

// By the journal's own protocol, and not by its library, which waits for a journal that does not read. No value
// here has a line feed, so each field is a line.
bool sendToJournal(const std::string& path, const LogMessage& message)
{
    const std::string fields =
        "MESSAGE=" + logText(message, false) +
        "\nPRIORITY=" + std::to_string(message.level == LogLevel::error ? LOG_ERR : LOG_DEBUG) +
        "\nSYSLOG_IDENTIFIER=sonvara\nSONVARA_SUBSYSTEM=" SONVARA_IDENTIFIER "\nSONVARA_CATEGORY=" +
        escapedForLog(message.category) + '\n';
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(static_cast<char*>(address.sun_path), sizeof address.sun_path - 1);
    const int socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    const auto sent = ::sendto(socket, fields.data(), fields.size(), MSG_NOSIGNAL,
                               reinterpret_cast<const sockaddr*>(&address), sizeof address);
    ::close(socket);
    return sent >= 0;
}

// Whether somebody reads there, or does so soon: a terminal may have been stopped.
bool isRead(int file)
{
    constexpr int limit = 100;  // milliseconds
    pollfd writing{file, POLLOUT, 0};
    return ::poll(&writing, 1, limit) > 0;
}

// One call for the whole line, so that lines of several threads do not mix.
void writeToStandardError(const LogMessage& message)
{
    const std::string line = "sonvara: " + escapedForLog(message.category) + ": " +
                             logText(message, ::isatty(STDERR_FILENO) != 0) + "\n";
    if (!isRead(STDERR_FILENO)) return;
    // There is nobody left to tell of a failure.
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, line.data(), line.size());
}

}  // namespace

JournalLog::JournalLog(std::string socket) : socket_(std::move(socket)) {}

bool JournalLog::isEnabled(LogLevel level, std::string_view category) const
{
    if (level == LogLevel::error) return true;
    const std::lock_guard lock(mutex_);
    auto entry = categories_.find(category);
    if (entry == categories_.end()) entry = categories_.try_emplace(std::string(category), category).first;
    return entry->second.qtCategory.isDebugEnabled();
}

void JournalLog::write(const LogMessage& message)
{
    const bool isInJournal = sendToJournal(socket_, message);
    // Elsewhere than on a terminal it would come into the journal twice: a session's programs write there.
    if (!isInJournal || ::isatty(STDERR_FILENO) != 0) writeToStandardError(message);
}

}  // namespace sonvara
