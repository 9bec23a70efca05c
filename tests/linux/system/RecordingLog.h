// A system log that keeps what it is told.
#pragma once

#include "platform/SystemLog.h"

#include <vector>

namespace sonvara {

class RecordingLog final : public SystemLog {
public:
    [[nodiscard]] bool isEnabled(LogLevel /*level*/, std::string_view /*category*/) const override
    {
        return true;
    }
    void write(const LogMessage& message) override { messages.push_back(message); }

    std::vector<LogMessage> messages;
};

}  // namespace sonvara
