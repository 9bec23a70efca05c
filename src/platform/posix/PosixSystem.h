// Clock, environment and files through the calls of the C library and POSIX.
#pragma once

#include "ports/System.h"

#include <string>
#include <utility>

namespace sonvara {

class PosixClock final : public Clock {
public:
    /// `zeroDigit` is the zero of the user's locale, as UTF-8. The other digits follow it in Unicode.
    explicit PosixClock(std::string zeroDigit) : zeroDigit_(std::move(zeroDigit)) {}
    [[nodiscard]] WallTime now() const override;
    [[nodiscard]] std::string timeText(WallTime time) const override;

private:
    std::string zeroDigit_;
};

class PosixEnvironment final : public Environment {
public:
    [[nodiscard]] Variables variables() const override;
};

class PosixFileManager final : public FileManager {
public:
    /// Asks for the effective user and group, whose rights a child would run with.
    [[nodiscard]] bool isExecutableFile(const std::string& path) const override;

    /// A folder of the user's own into which, as into those above it, nobody else can put anything: on
    /// Linux $XDG_RUNTIME_DIR, else a folder below the user's cache, which is then made. Where neither
    /// is such a folder, one in which nothing can be made. TMPDIR does not count: it may be everybody's.
    [[nodiscard]] std::string temporaryDirectory() const override;

    bool createDirectory(const std::string& path) override;
};

}  // namespace sonvara
