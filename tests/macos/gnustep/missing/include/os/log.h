// Stand-in: the unified log. Formats are checked against their arguments by the compiler.
#pragma once

#include <cstdint>

struct os_log_s;
using os_log_t = os_log_s*;
using os_log_type_t = std::uint8_t;

constexpr os_log_type_t OS_LOG_TYPE_DEBUG = 0x02;
constexpr os_log_type_t OS_LOG_TYPE_ERROR = 0x10;

os_log_t os_log_create(const char* subsystem, const char* category);
bool os_log_type_enabled(os_log_t log, os_log_type_t type);
void standInLog(os_log_t log, os_log_type_t type, const char* format, ...)
    __attribute__((format(os_log, 3, 4)));

#define os_log_with_type(log, type, ...) standInLog(log, type, __VA_ARGS__)
