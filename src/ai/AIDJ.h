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

namespace sonvara {

class ChildProcess;
struct ChildProcessSetup;
struct Platform;

/// Runs the tool as a child process with a time limit of 25 seconds and takes the last line of its
/// output. Every failure ends in no line and is reported in the activity log. Requests may overlap;
/// each looks for the tool and reads the settings afresh.
class AIDJ final : public std::enable_shared_from_this<AIDJ> {
public:
    /// The only folders in which a tool is looked for, in this order.
    static constexpr std::array<std::string_view, 4> binDirs{"/opt/homebrew/bin", "/usr/local/bin",
                                                             "/usr/bin", "/bin"};

    using Completion = std::function<void(std::optional<std::string>)>;

    [[nodiscard]] static std::shared_ptr<AIDJ> create(Platform& platform);

    /// Always true: whether the tool is there is found out by each request.
    // NOLINTNEXTLINE(readability-convert-member-functions-to-static): a question to the object
    [[nodiscard]] bool isAvailable() const { return true; }

    /// Any thread, returns at once: calls `completion` exactly once on a worker thread, with the line
    /// or with nothing. The request keeps this object alive.
    void intro(std::string track, std::string artist, std::string album, bool favorited,
               Completion completion);

private:
    explicit AIDJ(Platform& platform);
    [[nodiscard]] AIProvider provider() const;
    [[nodiscard]] std::optional<std::string> resolve(std::string_view executableName) const;
    [[nodiscard]] ChildProcessSetup childSetup(const AIProviderInfo& tool, std::string path,
                                               std::string prompt) const;
    void runCLI(const AIProviderInfo& tool, std::string prompt, Completion completion);
    [[nodiscard]] std::optional<std::string> runChild(const AIProviderInfo& tool,
                                                      const std::shared_ptr<ChildProcess>& child) const;
    [[nodiscard]] std::optional<std::string> report(const AIProviderInfo& tool, int exitStatus,
                                                    const std::string& output) const;
    void fail(const std::string& message) const;

    Platform& platform_;
    Logger logger_;
};

}  // namespace sonvara
