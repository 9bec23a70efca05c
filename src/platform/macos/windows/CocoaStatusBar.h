// The system status bar.
#pragma once

#include "ports/StatusBar.h"

namespace sonvara {

class CocoaStatusBar final : public StatusBar {
public:
    [[nodiscard]] std::unique_ptr<StatusItem> makeSquareItem() override;
    [[nodiscard]] std::unique_ptr<StatusMenu> makeMenu() override;
};

}  // namespace sonvara
