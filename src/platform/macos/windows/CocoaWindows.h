// Windows of the system.
#pragma once

#include "ports/Windows.h"

namespace sonvara {

/// A window is as large as its setup says, or as its form where that is larger.
class CocoaWindows final : public Windows {
public:
    [[nodiscard]] std::shared_ptr<Window> make(WindowSetup setup) override;
};

}  // namespace sonvara
