#include "platform/macos/system/UnifiedLog.h"

#include "platform/macos/system/LogArguments.h"

#include <os/log.h>

#include <utility>

namespace sonvara {

namespace {

os_log_type_t typeOf(LogLevel level)
{
    return level == LogLevel::debug ? OS_LOG_TYPE_DEBUG : OS_LOG_TYPE_ERROR;
}

}  // namespace

UnifiedLog::UnifiedLog(std::string subsystem) : subsystem_(std::move(subsystem)) {}

bool UnifiedLog::isEnabled(LogLevel level, std::string_view category) const
{
    return os_log_type_enabled(logFor(category), typeOf(level));
}

// An unmarked %s is private: the system hides it in the logs that it keeps.
void UnifiedLog::write(const LogMessage& message)
{
    os_log_t log = logFor(message.category);
    const os_log_type_t type = typeOf(message.level);
    const LogArguments arguments(message.pieces);
    const auto text = [&arguments](std::size_t index) { return arguments.texts[index].c_str(); };
    switch (arguments.privateCount) {
    case 0: os_log_with_type(log, type, "%{public}s", text(0)); break;
    case 1: os_log_with_type(log, type, "%{public}s%s%{public}s", text(0), text(1), text(2)); break;
    default:
        os_log_with_type(log, type, "%{public}s%s%{public}s%s%{public}s", text(0), text(1), text(2), text(3),
                         text(4));
    }
}

os_log_s* UnifiedLog::logFor(std::string_view category) const
{
    const std::lock_guard lock(mutex_);
    if (const auto known = logs_.find(category); known != logs_.end()) return known->second;
    std::string name(category);
    os_log_t log = os_log_create(subsystem_.c_str(), name.c_str());
    logs_.emplace(std::move(name), log);
    return log;
}

}  // namespace sonvara
