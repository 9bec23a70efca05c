// The system log with a journal of the test's own, and with readers that do not read.
#include "Terminal.h"

#include "platform/linux/system/JournalLog.h"

#include <QTemporaryDir>

#include <array>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace sonvara::test {

namespace {

using namespace std::chrono_literals;

class JournalSocketTest : public testing::Test {
protected:
    JournalSocketTest()
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strcpy(address.sun_path, path.c_str());
        EXPECT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    }
    ~JournalSocketTest() override { ::close(socket); }

    [[nodiscard]] std::string receive() const
    {
        std::array<char, 2000> datagram{};
        const auto count = ::recv(socket, datagram.data(), datagram.size(), MSG_DONTWAIT);
        return {datagram.data(), count > 0 ? static_cast<std::size_t>(count) : 0};
    }

    QTemporaryDir folder;
    const std::string path = folder.filePath("socket").toStdString();
    const int socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    JournalLog log{path};
};

TEST_F(JournalSocketTest, SendsFieldsToTheJournalAlone)
{
    testing::internal::CaptureStderr();
    log.write({LogLevel::error, "Speech", {{"speaking "}, Logger::hidden("a song"), {"\nPRIORITY=0"}}});
    EXPECT_EQ(receive(), "MESSAGE=speaking <private>\\nPRIORITY=0\nPRIORITY=3\nSYSLOG_IDENTIFIER=sonvara\n"
                         "SONVARA_SUBSYSTEM=" SONVARA_IDENTIFIER "\nSONVARA_CATEGORY=Speech\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(JournalSocketTest, SaysWhatIsMerelyForDebugging)
{
    log.write({LogLevel::debug, "Two\nlines", {{"detail"}}});
    EXPECT_EQ(receive(), "MESSAGE=detail\nPRIORITY=7\nSYSLOG_IDENTIFIER=sonvara\n"
                         "SONVARA_SUBSYSTEM=" SONVARA_IDENTIFIER "\nSONVARA_CATEGORY=Two\\nlines\n");
}

TEST_F(JournalSocketTest, WritesToATerminalAsWell)
{
    const Terminal terminal;
    log.write({LogLevel::error, "Speech", {{"to both"}}});
    EXPECT_NE(receive(), "");
    EXPECT_EQ(terminal.read(), "sonvara: Speech: to both\r\n");
}

TEST_F(JournalSocketTest, WritesToStandardErrorWhenTheJournalHasGone)
{
    testing::internal::CaptureStderr();
    ::unlink(path.c_str());
    log.write({LogLevel::error, "Speech", {{"the journal has gone"}}});
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "sonvara: Speech: the journal has gone\n");
}

TEST_F(JournalSocketTest, DoesNotWaitForAJournalThatDoesNotRead)
{
    testing::internal::CaptureStderr();
    std::string told;
    for (int count = 0; told.empty() && count < 100'000; ++count) {  // until its box is full
        log.write({LogLevel::error, "Speech", {{"again"}}});
        told = testing::internal::GetCapturedStderr();
        testing::internal::CaptureStderr();
    }
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(told, "sonvara: Speech: again\n");
}

TEST(StandardErrorTest, IsNotWaitedForForLong)
{
    std::array<int, 2> pipe{};
    ASSERT_EQ(::pipe2(pipe.data(), O_NONBLOCK | O_CLOEXEC), 0);
    const std::array<char, 4096> page{};
    while (::write(pipe[1], page.data(), page.size()) > 0) {
    }
    ::fcntl(pipe[1], F_SETFL, 0);
    const int saved = ::dup(STDERR_FILENO);
    ::dup2(pipe[1], STDERR_FILENO);
    const auto begin = std::chrono::steady_clock::now();
    JournalLog("/nowhere/at/all").write({LogLevel::error, "Speech", {{"to nobody"}}});
    const auto taken = std::chrono::steady_clock::now() - begin;
    ::dup2(saved, STDERR_FILENO);
    for (const int end : {saved, pipe[0], pipe[1]}) ::close(end);
    EXPECT_LT(taken, 1s);
}

}  // namespace

}  // namespace sonvara::test
