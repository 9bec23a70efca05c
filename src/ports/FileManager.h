// Port: the few questions that the system asks of the file system.
#pragma once

#include <string>

namespace sonvara {

/// Any thread; may block as file systems do. Paths are absolute.
class FileManager {
public:
    virtual ~FileManager() = default;

    /// Whether `path` is a regular file, or a link to one, that the current user may execute.
    [[nodiscard]] virtual bool isExecutableFile(const std::string& path) const = 0;

    /// The user's folder for temporary files, without a slash at its end.
    [[nodiscard]] virtual std::string temporaryDirectory() const = 0;

    /// Makes the folder and the missing ones above it; false when it is not there afterwards.
    virtual bool createDirectory(const std::string& path) = 0;
};

}  // namespace sonvara
