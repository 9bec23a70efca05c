// Writes to a journal of the test's own, at the place where a journal listens. For that the process
// moves to a private view of the file system, which needs a program of its own with one thread.
#include "Terminal.h"

#include "platform/linux/system/JournalLog.h"

#include <array>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace sonvara::test {

namespace {

constexpr const char* socketPath = "/run/systemd/journal/socket";

// Returns why there is no private /run; nothing when there is one.
std::string makeRunPrivate()
{
    const auto user = ::geteuid();
    const auto group = ::getegid();
    if (::unshare(CLONE_NEWNS) != 0) {
        if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return std::strerror(errno);
        std::ofstream("/proc/self/uid_map") << "0 " << user << " 1";
        // Files have a group, too: nobody whose own is unknown can make one. The system wants the first line.
        std::ofstream("/proc/self/setgroups") << "deny";
        std::ofstream("/proc/self/gid_map") << "0 " << group << " 1";
    }
    if (::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return std::strerror(errno);
    if (::mount("none", "/run", "tmpfs", 0, nullptr) != 0) return std::strerror(errno);
    return {};
}

int listenAsJournal()
{
    std::filesystem::create_directories("/run/systemd/journal");
    const int socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, socketPath);
    EXPECT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    return socket;
}

TEST(JournalLogTest, SendsFieldsToTheJournal)
{
    if (const auto reason = makeRunPrivate(); !reason.empty())
        GTEST_SKIP() << "no private file system to be had: " << reason;
    const int socket = listenAsJournal();
    JournalLog log;
    testing::internal::CaptureStderr();
    log.write({LogLevel::error, "Speech", {{"speaking "}, Logger::hidden("a song"), {"\nPRIORITY=0"}}});
    std::array<char, 2000> datagram{};
    const auto count = ::recv(socket, datagram.data(), datagram.size(), MSG_DONTWAIT);
    ASSERT_GT(count, 0);
    EXPECT_EQ(std::string(datagram.data(), static_cast<std::size_t>(count)),
              "MESSAGE=speaking <private>\\nPRIORITY=0\nPRIORITY=3\nSYSLOG_IDENTIFIER=sonvara\n"
              "SONVARA_SUBSYSTEM=" SONVARA_IDENTIFIER "\nSONVARA_CATEGORY=Speech\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");

    {
        const Terminal terminal;
        log.write({LogLevel::error, "Speech", {{"to both"}}});
        EXPECT_GT(::recv(socket, datagram.data(), datagram.size(), MSG_DONTWAIT), 0);
        EXPECT_EQ(terminal.read(), "sonvara: Speech: to both\r\n");
    }

    testing::internal::CaptureStderr();
    ::close(socket);
    std::filesystem::remove(socketPath);
    log.write({LogLevel::error, "Speech", {{"the journal has gone"}}});
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "sonvara: Speech: the journal has gone\n");
}

}  // namespace

}  // namespace sonvara::test
