// Port: the clipboard.
#pragma once

#include <string>

namespace sonvara {

/// The general pasteboard. Main thread; never fails visibly.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;

    /// Drops all content, of every type.
    virtual void clearContents() = 0;
    /// Puts `text` on the pasteboard as a plain string.
    virtual void setString(const std::string& text) = 0;
};

}  // namespace sonvara
