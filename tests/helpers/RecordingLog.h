// A system log that keeps what it is told, on any thread.
#pragma once

#include "ports/SystemLog.h"

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace sonvara::test {

class RecordingLog final : public SystemLog {
public:
    [[nodiscard]] bool isEnabled(LogLevel /*level*/, std::string_view /*category*/) const override
    {
        return true;
    }
    void write(const LogMessage& message) override
    {
        const std::lock_guard lock(mutex_);
        messages_.push_back(message);
    }
    [[nodiscard]] std::vector<LogMessage> messages() const
    {
        const std::lock_guard lock(mutex_);
        return messages_;
    }
    /// The errors among them, each as "CATEGORY: TEXT".
    [[nodiscard]] std::vector<std::string> errors() const
    {
        std::vector<std::string> found;
        for (const auto& message : messages()) {
            if (message.level != LogLevel::error) continue;
            found.push_back(message.category + ": ");
            for (const auto& piece : message.pieces) found.back() += piece.text;
        }
        return found;
    }

private:
    mutable std::mutex mutex_;
    std::vector<LogMessage> messages_;
};

}  // namespace sonvara::test
