// A note in a file of the user's.
#pragma once

#include "volume/NoteStore.h"

#include <string>

namespace sonvara {

/// A file at `path`, whose folder is made when it is needed. A new text is written beside the old one and
/// put in its place; not flushed to the disk, for it guards against our death and not the power's.
class PosixNoteStore final : public NoteStore {
public:
    explicit PosixNoteStore(std::string path) : path_(std::move(path)) {}

    [[nodiscard]] std::optional<std::string> load() override;
    void save(const std::string& text) override;
    void remove() override;
    /// The text is found at the same path with ".damaged" behind it.
    void setAside() override;

private:
    std::string path_;
};

}  // namespace sonvara
