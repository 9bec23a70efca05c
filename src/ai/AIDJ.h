// Asks a locally installed AI command-line tool for a spoken intro line.
#pragma once

#include "ai/AIProvider.h"
#include "log/DJLog.h"
#include "ports/SystemLog.h"

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sonvara {

class ChildProcess;
struct ChildProcessSetup;
class FileManager;
struct Platform;

/// Runs the tool as a child process with a time limit of 25 seconds and takes the last line of its
/// output. Every failure ends in no line and is reported in the activity log. Requests may overlap;
/// each looks for the tool and reads the settings afresh.
class AIDJ final : public std::enable_shared_from_this<AIDJ> {
public:
    using Completion = std::function<void(std::optional<std::string>)>;

    [[nodiscard]] static std::shared_ptr<AIDJ> create(Platform& platform);

    /// Always true: whether the tool is there is found out by each request.
    // NOLINTNEXTLINE(readability-convert-member-functions-to-static): a question to the object
    [[nodiscard]] bool isAvailable() const { return true; }

    /// Any thread, returns at once: calls `completion` exactly once on a worker thread, with the line
    /// or with nothing. The request keeps this object alive.
    void intro(std::string track, std::string artist, std::string album, bool favorited,
               Completion completion);

    /// Any thread: the whole prompt, which says who the DJ is, how to answer, and the track's facts as they
    /// are. Without an album there is no album line.
    [[nodiscard]] static std::string buildPrompt(std::string_view track, std::string_view artist,
                                                 std::string_view album, bool favorited);

    /// Any thread: the last non-empty line of a tool's output, trimmed; empty when there is none. Tools like to
    /// print a greeting or a heading first.
    [[nodiscard]] static std::string introLine(std::string_view output);

private:
    /// The only folders in which a tool is looked for, in this order.
    static constexpr std::array<std::string_view, 4> binDirs{"/opt/homebrew/bin", "/usr/local/bin",
                                                             "/usr/bin", "/bin"};

    explicit AIDJ(Platform& platform);
    [[nodiscard]] AIProvider provider() const;
    [[nodiscard]] static std::string searchPath();
    [[nodiscard]] static std::optional<std::string> resolve(const FileManager& files,
                                                            const std::string& executableName);
    [[nodiscard]] ChildProcessSetup childSetup(std::string path, std::vector<std::string> arguments) const;
    void runCLI(const std::string& binary, std::vector<std::string> leadingArgs, std::string prompt,
                Completion completion);
    [[nodiscard]] std::optional<std::string> runChild(const std::string& binary,
                                                      const std::shared_ptr<ChildProcess>& child) const;
    [[nodiscard]] std::optional<std::string> report(const std::string& binary, int exitStatus,
                                                    const std::string& output) const;
    void fail(const std::string& message) const;

    Platform& platform_;
    Logger logger_;
};

}  // namespace sonvara
