#include "platform/linux/system/JournalLog.h"

#include "platform/linux/system/LogText.h"

#include <array>
#include <sys/uio.h>
#include <syslog.h>
#define SD_JOURNAL_SUPPRESS_LOCATION  // it would always be the same place
#include <systemd/sd-journal.h>
#include <unistd.h>
#include <utility>

namespace sonvara {

namespace {

bool sendToJournal(const LogMessage& message)
{
    const std::string priority =
        "PRIORITY=" + std::to_string(message.level == LogLevel::error ? LOG_ERR : LOG_DEBUG);
    std::array fields{"MESSAGE=" + logText(message, false), priority,
                      std::string("SYSLOG_IDENTIFIER=sonvara"),
                      std::string("SONVARA_SUBSYSTEM=" SONVARA_IDENTIFIER),
                      "SONVARA_CATEGORY=" + escapedForLog(message.category)};
    std::array<iovec, fields.size()> parts{};
    for (std::size_t i = 0; i < fields.size(); ++i) parts[i] = {fields[i].data(), fields[i].size()};
    return ::sd_journal_sendv(parts.data(), static_cast<int>(parts.size())) == 0;
}

// One call for the whole line, so that lines of several threads do not mix.
void writeToStandardError(const LogMessage& message)
{
    const std::string line = "sonvara: " + escapedForLog(message.category) + ": " +
                             logText(message, ::isatty(STDERR_FILENO) != 0) + "\n";
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
    // Without a journal the library reports success and drops the message.
    const bool isInJournal = ::access(socket_.c_str(), F_OK) == 0 && sendToJournal(message);
    // Elsewhere than on a terminal it would come into the journal twice: a session's programs write there.
    if (!isInJournal || ::isatty(STDERR_FILENO) != 0) writeToStandardError(message);
}

}  // namespace sonvara
