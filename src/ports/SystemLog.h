// Port: the system's log, and the logger through which a component writes to it.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace sonvara {

enum class LogLevel { debug, error };

/// A piece of a log message. Private ones may not be readable in logs that are kept.
struct LogPiece {
    std::string text;
    bool isPublic = true;
};

struct LogMessage {
    LogLevel level = LogLevel::debug;
    std::string category;
    std::vector<LogPiece> pieces;
};

/// Where developers read what the program did. Any thread; never blocks for long, never fails.
class SystemLog {
public:
    virtual ~SystemLog() = default;

    /// Whether messages of this level and category are kept at all; a cheap test.
    [[nodiscard]] virtual bool isEnabled(LogLevel level, std::string_view category) const = 0;
    virtual void write(const LogMessage& message) = 0;
};

/// Writes one component's messages under its name, to a log that outlives it. Any thread.
class Logger {
public:
    Logger(SystemLog& log, std::string category) : log_(&log), category_(std::move(category)) {}

    void debug(std::vector<LogPiece> pieces) const { write(LogLevel::debug, std::move(pieces)); }
    void error(std::vector<LogPiece> pieces) const { write(LogLevel::error, std::move(pieces)); }

    /// An argument that kept logs may not show, such as what the user listens to.
    static LogPiece hidden(std::string text) { return {std::move(text), false}; }
    /// A truth value, shown as "true" or "false".
    static LogPiece flag(bool value) { return {value ? "true" : "false", true}; }

private:
    void write(LogLevel level, std::vector<LogPiece> pieces) const
    {
        if (log_->isEnabled(level, category_)) log_->write({level, category_, std::move(pieces)});
    }

    SystemLog* log_;
    std::string category_;
};

}  // namespace sonvara
