// Clock, environment and files through the calls of the C library and POSIX.
#pragma once

#include "ports/System.h"

namespace sonvara {

class PosixClock final : public Clock {
public:
    [[nodiscard]] WallTime now() const override;
    [[nodiscard]] TimeOfDay local(WallTime time) const override;
};

class PosixEnvironment final : public Environment {
public:
    [[nodiscard]] Variables variables() const override;
};

class PosixFileManager final : public FileManager {
public:
    /// Asks for the effective user and group, whose rights a child would run with.
    [[nodiscard]] bool isExecutableFile(const std::string& path) const override;

    /// The folder that the environment variable TMPDIR names, if it is an absolute path, else /tmp.
    [[nodiscard]] std::string temporaryDirectory() const override;

    bool createDirectory(const std::string& path) override;
};

}  // namespace sonvara
