// The diagnostics log as the user reads it.
#pragma once

#include "log/DJLog.h"
#include "ports/Form.h"
#include "ports/System.h"

#include <functional>
#include <vector>

namespace sonvara {

struct Platform;

/// One showing of a log, newest entry first. Main thread.
class LogView {
public:
    /// The view's last button calls `dismiss`. What it refers to must outlive its sheets.
    LogView(Platform& platform, DJLog& log, std::function<void()> dismiss);

    /// The view as a value; it does not need this object any more.
    [[nodiscard]] LogSheet sheet() const;

private:
    [[nodiscard]] static Symbol icon(DJLog::Level level);
    [[nodiscard]] static ColorRole color(DJLog::Level level);
    [[nodiscard]] static LogRow row(const Clock& clock, const DJLog::Entry& entry);
    [[nodiscard]] static std::vector<LogRow> rows(const Clock& clock, const DJLog& log);

    Platform& platform_;
    DJLog& log_;
    std::function<void()> dismiss_;
};

}  // namespace sonvara
