// The general pasteboard.
#pragma once

#include "ports/Pasteboard.h"

namespace sonvara {

class CocoaPasteboard final : public Pasteboard {
public:
    void clearContents() override;
    void setString(const std::string& text) override;
};

}  // namespace sonvara
