// The unified system log.
#pragma once

#include "ports/SystemLog.h"

#include <map>
#include <mutex>

struct os_log_s;

namespace sonvara {

/// Writes under the application's identifier as subsystem.
class UnifiedLog final : public SystemLog {
public:
    explicit UnifiedLog(std::string subsystem);
    [[nodiscard]] bool isEnabled(LogLevel level, std::string_view category) const override;
    void write(const LogMessage& message) override;

private:
    [[nodiscard]] os_log_s* logFor(std::string_view category) const;

    const std::string subsystem_;
    mutable std::mutex mutex_;
    mutable std::map<std::string, os_log_s*, std::less<>> logs_;  // the system never frees a log
};

}  // namespace sonvara
