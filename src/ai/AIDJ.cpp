#include "ai/AIDJ.h"

#include "ai/IntroText.h"
#include "ports/ChildProcess.h"
#include "ports/Platform.h"
#include "ports/Queues.h"
#include "ports/System.h"
#include "ports/UserDefaults.h"
#include "support/Text.h"

#include <chrono>
#include <utility>

namespace sonvara {
namespace {

constexpr std::chrono::seconds timeLimit{25};

std::string searchPath()
{
    std::string path;
    for (const auto directory : AIDJ::binDirs) {
        if (!path.empty()) path += ':';
        path += directory;
    }
    return path;
}

}  // namespace

std::shared_ptr<AIDJ> AIDJ::create(Platform& platform)
{
    return std::shared_ptr<AIDJ>(new AIDJ(platform));
}

AIDJ::AIDJ(Platform& platform) : platform_(platform), logger_(platform.systemLog, "AIDJ") {}

void AIDJ::intro(std::string track, std::string artist, std::string album, bool favorited,
                 Completion completion)
{
    auto request = [self = shared_from_this(), track = std::move(track), artist = std::move(artist),
                    album = std::move(album), favorited, completion = std::move(completion)] {
        auto prompt = buildPrompt(track, artist, album, favorited);
        self->runCLI(info(self->provider()), std::move(prompt), completion);
    };
    platform_.globalQueue.post(QualityOfService::standard, std::move(request));
}

AIProvider AIDJ::provider() const
{
    const auto stored = platform_.userDefaults.stringForKey(settings::aiProvider.key).value_or("");
    return aiProviderFromRawValue(stored).value_or(AIProvider::claudeCLI);
}

std::optional<std::string> AIDJ::resolve(std::string_view executableName) const
{
    for (const auto directory : binDirs) {
        auto path = std::string(directory) + '/' + std::string(executableName);
        if (platform_.fileManager.isExecutableFile(path)) return path;
    }
    return std::nullopt;
}

ChildProcessSetup AIDJ::childSetup(const AIProviderInfo& tool, std::string path, std::string prompt) const
{
    ChildProcessSetup setup;
    setup.executable = std::move(path);
    setup.arguments.assign(tool.leadingArguments.begin(), tool.leadingArguments.end());
    setup.arguments.push_back(std::move(prompt));
    setup.directory = platform_.fileManager.temporaryDirectory() + "/Sonvara-AIDJ";
    setup.environment = platform_.environment.variables();
    auto& variable = setup.environment["PATH"];
    variable = searchPath() + ':' + variable;
    setup.environment["GEMINI_CLI_TRUST_WORKSPACE"] = "true";
    return setup;
}

void AIDJ::runCLI(const AIProviderInfo& tool, std::string prompt, Completion completion)
{
    const std::string name(tool.executableName);
    auto path = resolve(name);
    if (!path) {
        fail(name + " CLI not found in " + searchPath());
        completion(std::nullopt);
        return;
    }
    DJLog::shared().log("Calling " + name + " for an intro…", DJLog::Level::info);
    auto run = [self = shared_from_this(), &tool, path = std::move(*path), prompt = std::move(prompt),
                completion = std::move(completion)] {
        const auto setup = self->childSetup(tool, path, prompt);
        // A folder that cannot be made is left to the launch, which then fails or succeeds by itself.
        (void)self->platform_.fileManager.createDirectory(setup.directory);
        completion(self->runChild(tool, self->platform_.processLauncher.make(setup)));
    };
    platform_.globalQueue.post(QualityOfService::userInitiated, std::move(run));
}

std::optional<std::string> AIDJ::runChild(const AIProviderInfo& tool,
                                          const std::shared_ptr<ChildProcess>& child) const
{
    const auto timeout = platform_.globalQueue.postAfter(QualityOfService::standard, timeLimit, [child] {
        if (child->isRunning()) child->terminate();
    });
    if (const auto error = child->launch()) {
        fail(std::string(tool.executableName) + " launch failed: " + *error);
        return std::nullopt;  // the time limit stays scheduled; it will find no running child
    }
    const auto output = child->readOutputToEnd();
    const auto exitStatus = child->waitUntilExit();
    timeout->cancel();
    return report(tool, exitStatus, output);
}

std::optional<std::string> AIDJ::report(const AIProviderInfo& tool, int exitStatus,
                                        const std::string& output) const
{
    const std::string name(tool.executableName);
    if (exitStatus != 0 || !text::isValidUtf8(output)) {
        fail(name + " exited " + std::to_string(exitStatus));
        return std::nullopt;
    }
    auto line = introLine(output);
    if (line.empty()) {
        DJLog::shared().log(name + " returned no usable output", DJLog::Level::error);
        return std::nullopt;
    }
    DJLog::shared().log(name + " intro: " + line, DJLog::Level::success);
    return line;
}

void AIDJ::fail(const std::string& message) const
{
    logger_.error({{message}});
    DJLog::shared().log(message, DJLog::Level::error);
}

}  // namespace sonvara
