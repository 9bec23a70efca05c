// Where notes are kept beyond the end of the process.
#pragma once

#include <optional>
#include <string>

namespace sonvara {

/// One small text on disk. Any thread, one at a time; failures are silent: the notes are a safety net,
/// and the music goes on without them.
class NoteStore {
public:
    virtual ~NoteStore() = default;

    /// The text; nothing when there is none or it cannot be read.
    [[nodiscard]] virtual std::optional<std::string> load() = 0;
    /// Replaces the text in one step, before it returns: whoever dies meanwhile leaves the old one or the new
    /// one.
    virtual void save(const std::string& text) = 0;
    virtual void remove() = 0;
    /// Moves a text that makes no sense out of the way, where a person may look at it.
    virtual void setAside() = 0;
};

}  // namespace sonvara
