// The clipboard of the desktop.
#pragma once

#include "ports/Pasteboard.h"

namespace sonvara {

/// The clipboard that "paste" reads; not the selection under the middle mouse button.
class QtPasteboard final : public Pasteboard {
public:
    void clearContents() override;
    void setString(const std::string& text) override;
};

}  // namespace sonvara
