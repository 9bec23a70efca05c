// Ports: the wall clock, the process's environment, and a few questions to the file system.
#pragma once

#include <chrono>
#include <map>
#include <string>

namespace sonvara {

using WallTime = std::chrono::system_clock::time_point;

/// Reads the wall clock and writes its times. Any thread; never fails.
class Clock {
public:
    virtual ~Clock() = default;
    [[nodiscard]] virtual WallTime now() const = 0;

    /// The time of day as "HH:MM:SS" on a 24-hour clock, in the time zone that is current at the call and the
    /// digits of the locale that the user had at the start.
    [[nodiscard]] virtual std::string timeText(WallTime time) const = 0;
};

/// Environment variables by name.
using Variables = std::map<std::string, std::string>;

/// Reads the environment. Any thread.
class Environment {
public:
    virtual ~Environment() = default;

    /// A copy of the environment as it is now.
    [[nodiscard]] virtual Variables variables() const = 0;
};

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
