// The unified log, kept for the tests to read.
#include "StandIns.h"

#include <os/log.h>

#include <atomic>
#include <cstdarg>
#include <map>
#include <mutex>
#include <string_view>
#include <utility>

struct os_log_s {
    std::string subsystem;
    std::string category;
};

namespace sonvara::test::standins {

namespace {

std::mutex mutex;
std::vector<LogRecord> records;
std::map<std::string, os_log_s> logs;
std::atomic<bool> enabled = true;

}  // namespace

void setLogEnabled(bool isEnabled)
{
    enabled = isEnabled;
}

std::vector<LogRecord> takeLog()
{
    const std::lock_guard lock(mutex);
    return std::exchange(records, {});
}

}  // namespace sonvara::test::standins

using namespace sonvara::test::standins;

os_log_t os_log_create(const char* subsystem, const char* category)
{
    const std::lock_guard lock(mutex);
    return &logs.try_emplace(std::string(subsystem) + '\n' + category, os_log_s{subsystem, category})
                .first->second;
}

bool os_log_type_enabled(os_log_t, os_log_type_t)
{
    return enabled;
}

// Knows the two conversions that the log of this program uses.
void standInLog(os_log_t log, os_log_type_t type, const char* format, ...)
{
    LogRecord record{type == OS_LOG_TYPE_ERROR, log->subsystem, log->category, {}, {}};
    std::va_list arguments;
    va_start(arguments, format);
    for (std::string_view rest = format; !rest.empty();) {
        const bool isPublic = rest.starts_with("%{public}s");
        if (isPublic || rest.starts_with("%s")) {
            const std::string text = va_arg(arguments, const char*);
            record.full += text;
            record.kept += isPublic ? text : "<private>";
            rest.remove_prefix(isPublic ? 10 : 2);
        } else {
            violated("the log's stand-in knows no conversion " + std::string(rest));
            break;
        }
    }
    va_end(arguments);
    const std::lock_guard lock(mutex);
    records.push_back(std::move(record));
}
