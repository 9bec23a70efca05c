// The voice with the real speech-dispatcher, on a sound server whose sink is silent.
#include "SpeechFixture.h"

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <sys/syscall.h>

namespace sonvara::test {

namespace {

using std::chrono::milliseconds;

pid_t readPid(const std::string& file)
{
    std::ifstream stream(file);
    pid_t pid = -1;
    stream >> pid;
    return pid;
}

/// Ends a process that is no child of ours, and waits until it has gone.
void end(pid_t process, int signal)
{
    if (process <= 0) return;
    const FileDescriptor handle(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
    ::kill(process, signal);
    pollfd watched{handle.get(), POLLIN, 0};
    ::poll(&watched, 1, 10000);
}

/// A session of the tests' own, with a sound server. The library starts the daemon.
class Session : public ::testing::Environment {
public:
    void SetUp() override
    {
        for (const char* name : {"SPEECHD_ADDRESS", "SPEECHD_CMD", "LC_ALL", "LANG"}) ::unsetenv(name);
        const char* const folder = ::getenv("XDG_RUNTIME_DIR");
        // The daemon that is killed must not be the user's.
        if (folder == nullptr || std::string(folder).find("/sonvara-desktop.") == std::string::npos)
            throw std::runtime_error("run it by tools/private-desktop --session");
        folder_ = folder;
    }

    void TearDown() override { killDaemon(SIGTERM); }

    void killDaemon(int signal) const
    {
        end(readPid(folder_ + "/speech-dispatcher/pid/speech-dispatcher.pid"), signal);
    }

private:
    std::string folder_;
};

Session* session = nullptr;

}  // namespace

class RealDaemonTest : public SpeechFixture {
protected:
    const std::string sentence =
        "This is a sentence that takes several seconds to speak, whatever the voice.";

    /// Speaks a short line to its end: daemon and sound server run then, and the next line begins at once.
    void speakOne()
    {
        const std::string before = ears->ends();
        speak("One.");
        ears->waitForEnds(before.size() + 1);
    }
};

TEST_F(RealDaemonTest, aSpokenLineEnds)
{
    start();
    speak("Now playing.");
    speak("Up next.");
    EXPECT_EQ(ears->waitForEnds(2), "FF");
    EXPECT_TRUE(log.messages().empty());
}

TEST_F(RealDaemonTest, linesThatAreHardToSpeakEndByThemselves)
{
    SpeechTimes times;
    times.speaking.base = std::chrono::minutes(5);
    start(times);
    const std::vector<std::string> lines = {".",
                                            "...",
                                            "\xf0\x9f\x98\x80",
                                            "<speak><mark name=\"x\"/></speak>",
                                            "\xe6\x97\xa5\xe6\x9c\xac",
                                            "&amp; \\ % '",
                                            "!"};
    for (const std::string& line : lines) speak(line);
    EXPECT_EQ(ears->waitForEnds(lines.size(), std::chrono::seconds(30)), std::string(lines.size(), 'F'));
}

TEST_F(RealDaemonTest, aStopEndsTheLineSoonAndTheNextOneIsSpoken)
{
    start();
    speakOne();
    speak(sentence);
    EXPECT_EQ(ears->waitForEnds(2, milliseconds(500)), "F") << "the sentence still speaks";
    voice->stopSpeaking();
    speak("Two.");
    EXPECT_EQ(ears->waitForEnds(2, milliseconds(500)), "FC");
    EXPECT_EQ(ears->waitForEnds(3), "FCF");
}

TEST_F(RealDaemonTest, aDaemonKilledMidLineEndsItAndTheNextLineIsSpoken)
{
    start();
    speakOne();
    speak(sentence);
    EXPECT_EQ(ears->waitForEnds(2, milliseconds(300)), "F") << "the sentence still speaks";
    session->killDaemon(SIGKILL);
    EXPECT_EQ(ears->waitForEnds(2, milliseconds(2000)), "FF");
    speak("Two.");
    EXPECT_EQ(ears->waitForEnds(3), "FFF");
    EXPECT_LE(log.messages().size(), 1U) << "the loss, but no failure to speak the next line";
}

TEST_F(RealDaemonTest, speaksInAnotherLanguage)
{
    start();
    speak({"Ein Lied.", SpeechVoice{"de-DE"}, 0.75});
    EXPECT_EQ(ears->waitForEnds(1), "F");
    EXPECT_TRUE(log.messages().empty());
}

}  // namespace sonvara::test

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    sonvara::test::session = new sonvara::test::Session;  // the framework owns it
    ::testing::AddGlobalTestEnvironment(sonvara::test::session);
    return RUN_ALL_TESTS();
}
