#include "ai/AIDJ.h"

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
        const auto tool = self->provider();
        const auto& leadingArgs = tool.leadingArguments();
        self->runCLI(std::string(tool.executableName()), {leadingArgs.begin(), leadingArgs.end()},
                     std::move(prompt), completion);
    };
    platform_.globalQueue.post(QualityOfService::standard, std::move(request));
}

AIProvider AIDJ::provider() const
{
    const auto stored = platform_.userDefaults.stringForKey(settings::aiProvider.key).value_or("");
    return AIProvider::fromRawValue(stored).value_or(AIProvider::claudeCLI);
}

std::string AIDJ::searchPath()
{
    std::string path;
    for (const auto directory : binDirs) {
        if (!path.empty()) path += ':';
        path += directory;
    }
    return path;
}

std::optional<std::string> AIDJ::resolve(const FileManager& files, const std::string& executableName)
{
    for (const auto directory : binDirs) {
        auto path = std::string(directory) + '/' + executableName;
        if (files.isExecutableFile(path)) return path;
    }
    return std::nullopt;
}

ChildProcessSetup AIDJ::childSetup(std::string path, std::vector<std::string> arguments) const
{
    ChildProcessSetup setup;
    setup.executable = std::move(path);
    setup.arguments = std::move(arguments);
    setup.directory = platform_.fileManager.temporaryDirectory() + "/Sonvara-AIDJ";
    setup.environment = platform_.environment.variables();
    auto& variable = setup.environment["PATH"];
    variable = searchPath() + ':' + variable;
    setup.environment["GEMINI_CLI_TRUST_WORKSPACE"] = "true";
    return setup;
}

void AIDJ::runCLI(const std::string& binary, std::vector<std::string> leadingArgs, std::string prompt,
                  Completion completion)
{
    auto path = resolve(platform_.fileManager, binary);
    if (!path) {
        fail(binary + " CLI not found in " + searchPath());
        completion(std::nullopt);
        return;
    }
    DJLog::shared().log("Calling " + binary + " for an intro…", DJLog::Level::info);
    auto arguments = std::move(leadingArgs);
    arguments.push_back(std::move(prompt));
    auto run = [self = shared_from_this(), binary, path = std::move(*path), arguments = std::move(arguments),
                completion = std::move(completion)] {
        const auto setup = self->childSetup(path, arguments);
        // A folder that cannot be made is left to the launch, which then fails or succeeds by itself.
        (void)self->platform_.fileManager.createDirectory(setup.directory);
        completion(self->runChild(binary, self->platform_.processLauncher.make(setup)));
    };
    platform_.globalQueue.post(QualityOfService::userInitiated, std::move(run));
}

std::optional<std::string> AIDJ::runChild(const std::string& binary,
                                          const std::shared_ptr<ChildProcess>& child) const
{
    const auto timeout = platform_.globalQueue.postAfter(QualityOfService::standard, timeLimit, [child] {
        if (child->isRunning()) child->terminate();
    });
    if (const auto error = child->launch()) {
        fail(binary + " launch failed: " + *error);
        return std::nullopt;  // the time limit stays scheduled; it will find no running child
    }
    const auto output = child->readOutputToEnd();
    const auto exitStatus = child->waitUntilExit();
    timeout->cancel();
    return report(binary, exitStatus, output);
}

std::optional<std::string> AIDJ::report(const std::string& binary, int exitStatus,
                                        const std::string& output) const
{
    if (exitStatus != 0 || !text::isValidUtf8(output)) {
        fail(binary + " exited " + std::to_string(exitStatus));
        return std::nullopt;
    }
    auto line = introLine(output);
    if (line.empty()) {
        DJLog::shared().log(binary + " returned no usable output", DJLog::Level::error);
        return std::nullopt;
    }
    DJLog::shared().log(binary + " intro: " + line, DJLog::Level::success);
    return line;
}

void AIDJ::fail(const std::string& message) const
{
    logger_.error({{message}});
    DJLog::shared().log(message, DJLog::Level::error);
}

}  // namespace sonvara
