// The diagnostics log as the user reads it.
#pragma once

#include "ports/Form.h"

#include <functional>

namespace sonvara {

class DJLog;
struct Platform;

/// The sheet over `log`, newest entry first; its last button calls `dismiss`. Everything that the sheet
/// refers to must outlive it. Main thread.
[[nodiscard]] LogSheet makeLogView(Platform& platform, DJLog& log, std::function<void()> dismiss);

}  // namespace sonvara
