// One connection of the library by itself.
#include "StubSpeechServer.h"

#include "helpers/EventLoop.h"
#include "helpers/TemporaryFolder.h"
#include "platform/linux/speech/SpeechdConnection.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <vector>

namespace sonvara::test {

namespace {

/// The descriptors of this process that are open now.
std::set<int> openDescriptors()
{
    std::set<int> found;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
        found.insert(std::stoi(entry.path().filename()));
    std::erase_if(found,
                  [](int number) { return ::fcntl(number, F_GETFD) < 0; });  // that of the folder itself
    return found;
}

class SpeechdConnectionTest : public ::testing::Test {
protected:
    SpeechdConnectionTest() { ::signal(SIGPIPE, SIG_IGN); }
    ~SpeechdConnectionTest() override { ::signal(SIGPIPE, SIG_DFL); }

    std::unique_ptr<SpeechdConnection> open(SpeechdConnection::Listener listener = [](int, SpeechdEvent) {})
    {
        error.clear();
        return SpeechdConnection::open(std::move(listener), error);
    }

    TemporaryFolder folder;
    StubSpeechServer server{folder.file("speechd.sock")};
    std::string error;
};

TEST_F(SpeechdConnectionTest, thereAreAtMostEight)
{
    for (int round = 0; round < 2; ++round) {
        std::vector<std::unique_ptr<SpeechdConnection>> connections;
        for (int i = 0; i < 8; ++i) {
            connections.push_back(open());
            ASSERT_NE(connections.back(), nullptr) << i << ": " << error;
        }
        EXPECT_EQ(open(), nullptr);
        EXPECT_EQ(error, "earlier connections are still waiting for its answer");
        connections.erase(connections.begin() + round * 7);
        EXPECT_NE(open(), nullptr) << "a place has come free: " << error;
    }
}

TEST_F(SpeechdConnectionTest, leavesNothingOpenBehind)
{
    const auto before = openDescriptors();
    auto connection = open();
    ASSERT_NE(connection, nullptr);
    EXPECT_GT(openDescriptors().size(), before.size());
    connection.reset();
    ASSERT_TRUE(server.waitForConnections(0));
    server.die();  // closes its own sockets
    server.comeBack();
    EXPECT_EQ(openDescriptors().size(), before.size());
}

TEST_F(SpeechdConnectionTest, startedProgramsInheritNoneOfItsSockets)
{
    const auto before = openDescriptors();
    const auto connection = open();
    ASSERT_NE(connection, nullptr);
    const FileDescriptor another = connection->socket();
    EXPECT_GE(another.get(), 0);
    for (const int number : openDescriptors()) {
        if (!before.contains(number)) {
            EXPECT_EQ(::fcntl(number, F_GETFD) & FD_CLOEXEC, FD_CLOEXEC) << number;
        }
    }
}

TEST_F(SpeechdConnectionTest, isNotSetUpByADaemonThatLeaves)
{
    for (const char* command :
         {"SET SELF NOTIFICATION BEGIN", "SET SELF NOTIFICATION CANCEL", "SET SELF PRIORITY"}) {
        const auto connection = open();
        ASSERT_NE(connection, nullptr);
        server.hangUpAt(command);
        EXPECT_FALSE(connection->setUp({})) << command;
    }
    const auto connection = open();
    ASSERT_NE(connection, nullptr);
    EXPECT_TRUE(connection->setUp({}));
}

TEST_F(SpeechdConnectionTest, startsTheDaemonThatIsMissing)
{
    server.die();
    const std::string daemon = folder.file("daemon");
    std::ofstream(daemon) << "#!/bin/sh\ntouch \"" << folder.file("started") << "\"\n";
    ::chmod(daemon.c_str(), 0700);
    ::setenv("SPEECHD_CMD", daemon.c_str(), 1);
    EXPECT_EQ(open(), nullptr) << "it began and left";
    EXPECT_TRUE(std::filesystem::exists(folder.file("started"))) << error;
}

TEST_F(SpeechdConnectionTest, aListenerIsNotCutOffWhenTheConnectionCloses)
{
    std::atomic<bool> begun{false};
    std::atomic<bool> done{false};
    auto connection = open([&](int, SpeechdEvent event) {
        if (event != SpeechdEvent::begin) return;
        begun = true;
        // Long enough for the close to come meanwhile, in steps of which each may be the thread's end.
        for (int i = 0; i < 20; ++i) std::this_thread::sleep_for(std::chrono::milliseconds(10));
        done = true;
    });
    ASSERT_NE(connection, nullptr);
    ASSERT_TRUE(connection->setUp({}));
    EXPECT_GE(connection->say("one"), 0);
    ASSERT_TRUE(eventually([&] { return begun.load(); }));
    connection.reset();
    EXPECT_TRUE(done);
}

}  // namespace

}  // namespace sonvara::test
