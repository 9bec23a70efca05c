// Starts the helper program, in a folder of its own.
#pragma once

#include "helpers/TemporaryFolder.h"
#include "platform/posix/PosixProcessLauncher.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cerrno>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace sonvara::test {

class PosixChildProcessFixture : public testing::Test {
protected:
    ChildProcessSetup setup(std::vector<std::string> arguments) const
    {
        return {CHILD_HELPER, std::move(arguments), folder_.path(), {}};
    }

    std::shared_ptr<ChildProcess> launched(std::vector<std::string> arguments)
    {
        auto child = launcher_.make(setup(std::move(arguments)));
        EXPECT_EQ(child->launch(), std::nullopt);
        return child;
    }

    /// Runs the helper to its end and gives what it printed.
    std::string outputOf(std::vector<std::string> arguments)
    {
        const auto child = launched(std::move(arguments));
        auto output = child->readOutputToEnd();
        EXPECT_EQ(child->waitUntilExit(), 0);
        EXPECT_FALSE(child->isRunning());
        return output;
    }

    static void expectNoChildren()
    {
        EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
        EXPECT_EQ(errno, ECHILD);
    }

    TemporaryFolder folder_;
    PosixProcessLauncher launcher_;
};

}  // namespace sonvara::test
