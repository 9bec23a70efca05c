// A daemon that is missing, dies, hangs, or does not report ends.
#include "StubFixture.h"

#include <algorithm>
#include <random>

namespace sonvara::test {

using std::chrono::milliseconds;
using std::chrono::seconds;

class SpeechFaultsTest : public StubFixture {
protected:
    /// Whether `voice` goes in bounded time.
    void expectQuickGoing()
    {
        const auto before = std::chrono::steady_clock::now();
        voice.reset();
        EXPECT_LT(std::chrono::steady_clock::now() - before, seconds(5));
    }
    static SpeechTimes impatient()
    {
        SpeechTimes times;
        times.answerLimit = seconds(1);
        return times;
    }
};

TEST_F(SpeechFaultsTest, aLineCountsAsEndedWhenItsTimeIsOver)
{
    server.setEndings(Endings::beginsOnly);
    start(shortTimes());
    speak("one");
    EXPECT_EQ(ears->waitForEnds(1), "F");
    EXPECT_TRUE(server.waitForCommand("CANCEL SELF"));
    speak("two");
    EXPECT_EQ(ears->waitForEnds(2), "FF");
    EXPECT_EQ(server.lines(), (std::vector<std::string>{"one", "two"}));
    ASSERT_EQ(log.messages().size(), 1U) << "it is told once and not for each line";
    EXPECT_EQ(log.messages()[0].pieces[0].text,
              "A line was given to the speech daemon and never came to its end: is a sound server running?");
}

TEST_F(SpeechFaultsTest, aDaemonThatDiesEndsTheLine)
{
    start();
    speak("one");
    ASSERT_TRUE(server.waitForLines(1));
    server.die();
    EXPECT_EQ(ears->waitForEnds(1), "F");
    for (const auto& message : log.messages())
        EXPECT_TRUE(message.pieces[0].text.starts_with("No line can be spoken")) << "no time had to pass";
    server.comeBack();
    speak("two");
    ASSERT_TRUE(server.waitForLines(2));
    server.tell("702 END");
    EXPECT_EQ(ears->waitForEnds(2), "FF");
}

TEST_F(SpeechFaultsTest, noLineIsLostWhenTheDaemonLeftMeanwhile)
{
    server.setEndings(Endings::atOnce);
    start();
    for (std::size_t i = 1; i <= 20; ++i) {
        speak(std::to_string(i));
        EXPECT_EQ(ears->waitForEnds(i), std::string(i, 'F'));
        EXPECT_EQ(server.lines().size(), i);
        server.die();
        server.comeBack();
    }
    EXPECT_TRUE(log.messages().empty());
}

TEST_F(SpeechFaultsTest, noLineIsLostWhenTheDaemonLeavesAtIt)
{
    server.setEndings(Endings::atOnce);
    start();
    speak("one");
    EXPECT_EQ(ears->waitForEnds(1), "F");
    server.hangUpAt("SPEAK");
    speak("two");
    EXPECT_EQ(ears->waitForEnds(2), "FF");
    EXPECT_EQ(server.lines(), (std::vector<std::string>{"one", "two"}));
}

TEST_F(SpeechFaultsTest, aMissingDaemonEndsLinesAtOnceAndIsLoggedOnce)
{
    server.die();
    start();
    speak("one");
    speak("two");
    EXPECT_EQ(ears->waitForEnds(2), "FF");
    ASSERT_EQ(log.messages().size(), 1U);
    EXPECT_EQ(log.messages()[0].level, LogLevel::error);
    EXPECT_EQ(log.messages()[0].category, "SpeechDispatcher");
    EXPECT_TRUE(log.messages()[0].pieces.at(0).text.starts_with(
        "No line can be spoken, because the speech daemon (speech-dispatcher) cannot be used: "));
}

TEST_F(SpeechFaultsTest, aNewFailureAfterASuccessIsLoggedAgain)
{
    server.setEndings(Endings::atOnce);
    server.die();
    start();
    speak("one");
    EXPECT_EQ(ears->waitForEnds(1), "F");
    server.comeBack();
    speak("two");
    EXPECT_EQ(ears->waitForEnds(2), "FF");
    server.die();
    speak("three");
    EXPECT_EQ(ears->waitForEnds(3), "FFF");
    EXPECT_EQ(log.messages().size(), 2U);
}

TEST_F(SpeechFaultsTest, aRefusedLineEnds)
{
    server.refuseLines(true);
    start();
    speak("one");
    EXPECT_EQ(ears->waitForEnds(1), "F");
    EXPECT_EQ(log.messages().size(), 1U);
    server.refuseLines(false);
    speak("two");
    EXPECT_TRUE(server.waitForLines(1));
}

TEST_F(SpeechFaultsTest, noLineIsLostWhenTheDaemonLeavesWhileItIsConnectedTo)
{
    server.setEndings(Endings::atOnce);
    for (const char* command : {"SET SELF CLIENT_NAME", "SET SELF NOTIFICATION", "SPEAK"}) {
        SCOPED_TRACE(command);
        const std::size_t before = server.lines().size();
        server.hangUpAt(command);
        start();
        speak("one");
        EXPECT_EQ(ears->waitForEnds(1), "F");
        EXPECT_EQ(server.lines().size(), before + 1);
        ears = std::make_shared<Ears>();
    }
}

TEST_F(SpeechFaultsTest, aHangingDaemonCostsOneLine)
{
    for (const char* command :
         {"SET SELF CLIENT_NAME", "SET SELF NOTIFICATION", "SET SELF PRIORITY", "SPEAK"}) {
        SCOPED_TRACE(command);
        const std::size_t before = server.lines().size();
        server.setEndings(Endings::atOnce);
        start(impatient());
        server.hangAt(command);
        speak("lost");
        EXPECT_EQ(ears->waitForEnds(1), "F");
        speak("spoken");
        EXPECT_EQ(ears->waitForEnds(2), "FF");
        EXPECT_EQ(server.lines().size(), before + 1);
        expectQuickGoing();
        ears = std::make_shared<Ears>();
    }
}

TEST_F(SpeechFaultsTest, aStopIsReportedAtOnceWhileTheDaemonHangs)
{
    for (const char* command : {"SET SELF CLIENT_NAME", "SPEAK", "CANCEL SELF"}) {
        SCOPED_TRACE(command);
        start();
        server.hangAt(command);
        speak("one");
        speak("two");
        if (std::string(command) == "CANCEL SELF") {
            ASSERT_TRUE(server.waitForLines(1));
        }
        voice->stopSpeaking();
        EXPECT_EQ(ears->waitForEnds(2), "CC");
        speak("three");
        expectQuickGoing();
        EXPECT_EQ(ears->ends(), "CCC");
        ears = std::make_shared<Ears>();
    }
}

TEST_F(SpeechFaultsTest, aLineWaitingBehindAHangingCallIsSpokenOnANewConnection)
{
    start(impatient());
    speak("one");
    ASSERT_TRUE(server.waitForLines(1));
    server.hangAt("CANCEL SELF");
    voice->stopSpeaking();
    speak("two");
    ASSERT_TRUE(server.waitForLines(2));
    server.tell("702 END");
    EXPECT_EQ(ears->waitForEnds(2), "CF");
}

TEST_F(SpeechFaultsTest, aDaemonThatTakesNoConnectionsNeitherBlocksNorOutlivesTheVoice)
{
    server.stopAccepting();
    start();
    speak("one");
    speak("two");
    voice->stopSpeaking();
    EXPECT_EQ(ears->waitForEnds(2), "CC");
    speak("three");
    expectQuickGoing();
    EXPECT_EQ(ears->ends(), "CCC");
}

TEST_F(SpeechFaultsTest, linesEndAtOnceWhenTooManyConnectionsHang)
{
    server.stopAccepting();
    SpeechTimes times;
    times.answerLimit = milliseconds(20);
    start(times);
    for (int i = 0; i < 12; ++i) speak("lost");
    EXPECT_EQ(ears->waitForEnds(12), std::string(12, 'F'));
    server.die();
    server.comeBack();
    server.setEndings(Endings::atOnce);
    // The connections that hung come free when the daemon has gone, each on its own thread.
    for (std::size_t ends = 13; server.lines().empty() && ends < 1000; ++ends) {
        speak("spoken");
        ears->waitForEnds(ends);
    }
    EXPECT_FALSE(server.lines().empty());
}

TEST_F(SpeechFaultsTest, closesTheConnectionAfterAQuietWhile)
{
    server.setEndings(Endings::atOnce);
    SpeechTimes times;
    times.quietWhile = milliseconds(50);
    start(times);
    speak("one");
    EXPECT_EQ(ears->waitForEnds(1), "F");
    EXPECT_TRUE(server.waitForConnections(0));
    speak("two");
    EXPECT_EQ(ears->waitForEnds(2), "FF");
    EXPECT_EQ(server.lines().size(), 2U);
}

TEST_F(SpeechFaultsTest, doesNotCloseWhileALineSpeaks)
{
    SpeechTimes times;
    times.quietWhile = milliseconds(1);
    times.speaking.base = milliseconds(300);
    start(times);
    speak("one");
    EXPECT_EQ(ears->waitForEnds(1), "F");
    EXPECT_TRUE(server.waitForCommand("CANCEL SELF"))
        << "it was ended by its own time, on an open connection";
}

/// Random orders and misfortunes: whatever happens, each line ends once and none is spoken twice or
/// out of order.
class RandomSpeechTest : public StubFixture, public ::testing::WithParamInterface<unsigned> {
protected:
    void misfortune(int kind)
    {
        if (kind == 0) {
            server.die();
            server.comeBack();
        }
        if (kind == 1) server.hangAt("SET");
        if (kind == 2) server.hangAt("CANCEL");
        if (kind == 3) server.hangUpAt("SPEAK");
        if (kind == 4) server.setEndings(Endings::beginsOnly);
        if (kind == 5) server.setEndings(Endings::atNextLine);
        if (kind >= 6) server.setEndings(Endings::atOnce);
    }
};

TEST_P(RandomSpeechTest, endsEachLineOnce)
{
    std::mt19937 random(GetParam());
    SpeechTimes times = shortTimes();
    times.speaking.base = milliseconds(20);
    times.answerLimit = milliseconds(200);
    times.quietWhile = milliseconds(5);
    start(times);
    const int count = 60;
    for (int i = 0; i < count; ++i) {
        speak(std::to_string(1000 + i));
        if (random() % 3 == 0) voice->stopSpeaking();
        if (random() % 4 == 0) misfortune(static_cast<int>(random() % 9));
        if (random() % 4 == 0) ears->waitForEnds(random() % static_cast<unsigned>(i + 1));
    }
    misfortune(6);
    EXPECT_EQ(ears->waitForEnds(count, seconds(60)).size(), static_cast<std::size_t>(count));
    voice.reset();
    const auto lines = server.lines();
    EXPECT_TRUE(std::ranges::is_sorted(lines)) << "lines were spoken out of order";
    EXPECT_EQ(std::ranges::adjacent_find(lines), lines.end()) << "a line was spoken twice";
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomSpeechTest, ::testing::Range(0U, 12U));

}  // namespace sonvara::test
