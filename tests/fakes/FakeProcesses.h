// Command-line tools that do what the test wants, in virtual time.
#pragma once

#include "fakes/VirtualTime.h"
#include "ports/ChildProcess.h"
#include "ports/System.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace sonvara::test {

/// How a tool behaves.
struct ToolBehaviour {
    std::string output;
    /// The output as it depends on what the tool was asked; in place of `output`.
    std::function<std::string(const ChildProcessSetup&)> answer = nullptr;
    int exitStatus = 0;
    VirtualTime::Duration runsFor{500};   ///< until its output ends
    VirtualTime::Duration lingersFor{0};  ///< from then to its own end
    std::optional<std::string> launchError = std::nullopt;
    bool ignoresTerminate = false;
};

class FakeChild final : public ChildProcess {
public:
    FakeChild(VirtualTime& time, ChildProcessSetup how, ToolBehaviour behaviour)
        : setup(std::move(how)),
          time_(time),
          behaviour_(std::move(behaviour))
    {}

    std::optional<std::string> launch() override
    {
        EXPECT_FALSE(time_.isMainThread());
        EXPECT_FALSE(wasLaunched_) << "a child is launched once";
        wasLaunched_ = true;
        if (behaviour_.launchError) return behaviour_.launchError;
        launchedAt_ = time_.elapsed();
        thread_ = std::this_thread::get_id();
        return std::nullopt;
    }
    std::string readOutputToEnd() override
    {
        EXPECT_TRUE(isRunning());
        time_.blockWorker([this] { return hasEnded(); }, behaviour_.runsFor);
        if (wasTerminated_) return {};
        return behaviour_.answer ? behaviour_.answer(setup) : behaviour_.output;
    }
    int waitUntilExit() override
    {
        if (behaviour_.lingersFor > VirtualTime::Duration::zero())
            time_.blockWorker([this] { return wasTerminated_; }, behaviour_.lingersFor);
        wasAwaited_ = true;
        EXPECT_FALSE(isRunning());
        EXPECT_EQ(std::this_thread::get_id(), thread_) << "the launching thread stays until the end";
        return wasTerminated_ ? 143 : behaviour_.exitStatus;
    }
    [[nodiscard]] bool isRunning() const override { return launchedAt_ && !hasEnded(); }
    void terminate() override
    {
        ++terminateRequests;
        if (isRunning() && !behaviour_.ignoresTerminate) wasTerminated_ = true;
    }

    ChildProcessSetup setup;
    int terminateRequests = 0;

private:
    [[nodiscard]] bool hasEnded() const
    {
        const auto runsFor = behaviour_.runsFor + behaviour_.lingersFor;
        return wasAwaited_ || wasTerminated_ || time_.elapsed() >= *launchedAt_ + runsFor;
    }

    VirtualTime& time_;
    ToolBehaviour behaviour_;
    std::optional<VirtualTime::Duration> launchedAt_;
    std::thread::id thread_;
    bool wasLaunched_ = false;
    bool wasAwaited_ = false;
    bool wasTerminated_ = false;
};

/// Launches `FakeChild`ren, each with the behaviour that is set at that moment.
class FakeLauncher final : public ProcessLauncher {
public:
    explicit FakeLauncher(VirtualTime& time) : time_(time) {}
    std::shared_ptr<ChildProcess> make(ChildProcessSetup setup) override
    {
        EXPECT_FALSE(time_.isMainThread());
        children.push_back(std::make_shared<FakeChild>(time_, std::move(setup), behaviour));
        return children.back();
    }

    ToolBehaviour behaviour;
    std::vector<std::shared_ptr<FakeChild>> children;

private:
    VirtualTime& time_;
};

class FakeFileManager final : public FileManager {
public:
    explicit FakeFileManager(VirtualTime& time) : time_(time) {}
    [[nodiscard]] bool isExecutableFile(const std::string& path) const override
    {
        EXPECT_FALSE(time_.isMainThread()) << "the file system may block";
        return executables.contains(path);
    }
    [[nodiscard]] std::string temporaryDirectory() const override { return "/temporary"; }
    bool createDirectory(const std::string& path) override
    {
        createdDirectories.push_back(path);
        return canCreateDirectories;
    }

    std::set<std::string> executables;
    std::vector<std::string> createdDirectories;
    bool canCreateDirectories = true;

private:
    VirtualTime& time_;
};

}  // namespace sonvara::test
