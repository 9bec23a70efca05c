// Files through the POSIX calls.
#pragma once

#include "ports/FileManager.h"

namespace sonvara {

class PosixFileManager final : public FileManager {
public:
    /// Asks for the effective user and group, whose rights a child would run with.
    [[nodiscard]] bool isExecutableFile(const std::string& path) const override;

    /// The folder that the environment variable TMPDIR names, if it is an absolute path, else /tmp.
    [[nodiscard]] std::string temporaryDirectory() const override;

    bool createDirectory(const std::string& path) override;
};

}  // namespace sonvara
