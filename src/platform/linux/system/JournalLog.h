// The system log in the journal of systemd, and on standard error when the program was started in a terminal.
#pragma once

#include "ports/SystemLog.h"

#include <QLoggingCategory>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

namespace sonvara {

/// Errors are always kept. Debug messages are kept when the environment switches their category on:
/// QT_LOGGING_RULES="sonvara.*.debug=true", or "sonvara.Speech.debug=true" for one of them.
///
/// In the journal an entry has the fields SYSLOG_IDENTIFIER=sonvara, SONVARA_SUBSYSTEM and
/// SONVARA_CATEGORY. It is also written to standard error where that is a terminal or there is no
/// journal, as the line "sonvara: CATEGORY: message". Private pieces are hidden everywhere but on a
/// terminal, whose user is the one they belong to. A journal that does not read counts as none; a terminal that
/// has been stopped is waited for 0.1 seconds.
class JournalLog final : public SystemLog {
public:
    /// `socket` is where a running journal listens.
    explicit JournalLog(std::string socket = "/run/systemd/journal/socket");

    [[nodiscard]] bool isEnabled(LogLevel level, std::string_view category) const override;
    void write(const LogMessage& message) override;

private:
    struct Category {
        explicit Category(std::string_view shortName)
            : name("sonvara." + std::string(shortName)),
              qtCategory(name.c_str(), QtWarningMsg)
        {}
        const std::string name;
        const QLoggingCategory qtCategory;  // keeps the pointer to the name
    };

    const std::string socket_;
    mutable std::mutex mutex_;  // guards the list
    mutable std::map<std::string, Category, std::less<>> categories_;
};

}  // namespace sonvara
