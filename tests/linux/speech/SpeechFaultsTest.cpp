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
        times.speaking.base = std::chrono::minutes(1);
        return times;
    }
    /// What is logged when a line is lost.
    static std::string lost(const std::string& reason)
    {
        return "SpeechDispatcher: No line can be spoken, because the speech daemon (speech-dispatcher) "
               "cannot be used: " +
               reason;
    }
    const std::string overdue = "SpeechDispatcher: A line was given to the speech daemon and never came to "
                                "its end: is a sound server running?";
};

TEST_F(SpeechFaultsTest, waitsAsLongAsItIsDocumented)
{
    const SpeechTimes times;
    EXPECT_EQ(times.answerLimit, seconds(8));
    EXPECT_EQ(times.quietWhile, seconds(30));
    EXPECT_EQ(times.quitLimit, milliseconds(500));
}

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
    EXPECT_EQ(log.errors(), std::vector{overdue}) << "it is told once and not for each line";
    EXPECT_TRUE(log.messages().at(0).pieces.at(0).isPublic);
}

TEST_F(SpeechFaultsTest, aLineThatNeverEndsIsLoggedAgainAfterOneThatDoes)
{
    start(shortTimes());
    for (const auto endings : {Endings::beginsOnly, Endings::atOnce, Endings::beginsOnly}) {
        server.setEndings(endings);
        const std::size_t before = ears->ends().size();
        speak("line");
        EXPECT_EQ(ears->waitForEnds(before + 1).size(), before + 1);
    }
    EXPECT_EQ(log.errors(), (std::vector{overdue, overdue}));
}

TEST_F(SpeechFaultsTest, aLineThatTheDaemonHasIsGivenItsOwnTimeAlone)
{
    server.setEndings(Endings::waits);
    SpeechTimes times = shortTimes();
    times.answerLimit = std::chrono::minutes(1);
    start(times);
    speak("one");
    EXPECT_EQ(ears->waitForEnds(1), "F");
}

TEST_F(SpeechFaultsTest, aLinesTimeBeginsAnewWhenItBegins)
{
    server.setEndings(Endings::waits);
    SpeechTimes times;
    times.speaking = {milliseconds(800), {}, {}};
    start(times);
    speak("one");
    ASSERT_TRUE(hasHeard(2)) << "that the connection is open, and the line accepted";
    EXPECT_EQ(ears->waitForEnds(1, milliseconds(200)), "") << "another program speaks first";
    const auto begin = std::chrono::steady_clock::now();
    server.tell("701 BEGIN");
    EXPECT_EQ(ears->waitForEnds(1), "F");
    EXPECT_GE(std::chrono::steady_clock::now() - begin, times.speaking.base);
}

TEST_F(SpeechFaultsTest, aDaemonThatEndsItsSideOfTheConnectionHasLeft)
{
    start();
    speak("one");
    ASSERT_TRUE(hasHeard(3));
    server.endSending();
    EXPECT_EQ(ears->waitForEnds(1), "F");
    EXPECT_EQ(log.errors(), std::vector{lost("it hung up")});
}

TEST_F(SpeechFaultsTest, aDaemonThatDiesEndsTheLine)
{
    start();
    speak("one");
    ASSERT_TRUE(hasHeard(3)) << "that the connection is open, and the line accepted and begun";
    server.die();
    EXPECT_EQ(ears->waitForEnds(1), "F");
    EXPECT_EQ(log.errors(), std::vector{lost("it hung up")})
        << "it may have been spoken, and is not tried again";
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

TEST_F(SpeechFaultsTest, aLineAtWhichTheDaemonLeavesTwiceIsLost)
{
    server.hangUpAt("SPEAK", 9);
    start();
    speak("one");
    EXPECT_EQ(ears->waitForEnds(1), "F");
    EXPECT_EQ(std::ranges::count(server.commands(), "SPEAK"), 2);
}

TEST_F(SpeechFaultsTest, aMissingDaemonEndsLinesAtOnceAndIsLoggedOnce)
{
    server.die();
    start();
    speak("one");
    speak("two");
    EXPECT_EQ(ears->waitForEnds(2), "FF");
    ASSERT_EQ(log.messages().size(), 1U);
    EXPECT_TRUE(log.messages()[0].pieces.at(0).isPublic);
    ASSERT_EQ(log.errors().size(), 1U);
    const std::string error = log.errors()[0];
    EXPECT_TRUE(error.starts_with(lost(""))) << error;
    EXPECT_NE(error.find(folder.path()), std::string::npos)
        << "the library's own reason names the socket: " << error;
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
    EXPECT_EQ(log.errors(), std::vector{lost("it refused a line")});
    EXPECT_EQ(std::ranges::count(server.commands(), "SPEAK"), 2)
        << "it is tried once more, on another connection";
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

TEST_F(SpeechFaultsTest, aLineThatTheDaemonMayHaveIsNotSpokenAgain)
{
    server.setEndings(Endings::atOnce);
    start(impatient());
    speak("one");
    EXPECT_EQ(ears->waitForEnds(1), "F");
    server.hangAt("SPEAK");
    speak("two");
    EXPECT_EQ(ears->waitForEnds(2), "FF");
    EXPECT_EQ(log.errors(), std::vector{lost("it does not answer")});
    EXPECT_EQ(server.lines(), std::vector<std::string>{"one"});
}

TEST_F(SpeechFaultsTest, aHangingCallIsNotTakenForALineThatNeverEnds)
{
    server.hangAt("SPEAK");
    SpeechTimes times;
    times.answerLimit = milliseconds(500);
    times.speaking = {milliseconds(400), {}, {}};
    start(times);
    speak("one");
    EXPECT_EQ(ears->waitForEnds(1), "F");
    EXPECT_EQ(log.errors(), std::vector{lost("it does not answer")});
}

TEST_F(SpeechFaultsTest, itsEndWaitsForWhatIsUnderWayOnlySoLong)
{
    for (const bool isRetired : {false, true}) {
        SCOPED_TRACE(isRetired);
        const std::size_t before = server.lines().size();
        SpeechTimes times;
        times.quitLimit = milliseconds(300);
        start(times);
        speak("one");
        ASSERT_TRUE(server.waitForLines(before + 1));
        server.hangAt("CANCEL SELF");
        voice->stopSpeaking();
        if (isRetired) {
            speak({"two", SpeechVoice{"de-DE"}, 0.5});
            ASSERT_TRUE(server.waitForLines(before + 2));
            server.tell("702 END");
            EXPECT_EQ(ears->waitForEnds(2), "CF");
        }
        const auto begin = std::chrono::steady_clock::now();
        expectQuickGoing();
        EXPECT_GE(std::chrono::steady_clock::now() - begin, times.quitLimit);
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

TEST_F(SpeechFaultsTest, closesTheConnectionAfterAStopToo)
{
    SpeechTimes times;
    times.quietWhile = milliseconds(50);
    times.speaking.base = std::chrono::minutes(1);
    start(times);
    speak("one");
    ASSERT_TRUE(hasHeard(3));
    voice->stopSpeaking();
    EXPECT_TRUE(server.waitForConnections(0));
}

TEST_F(SpeechFaultsTest, keepsTheConnectionForAWhile)
{
    server.setEndings(Endings::atOnce);
    start();
    for (const char* ends : {"F", "FF"}) {
        speak("line");
        EXPECT_EQ(ears->waitForEnds(std::string(ends).size()), ends);
        runEvents();
    }
    EXPECT_EQ(std::ranges::count(server.commands(), "SET SELF PRIORITY message"), 1);
}

TEST_F(SpeechFaultsTest, theCloseOfAnEarlierConnectionDoesNotDisturbTheNext)
{
    server.setEndings(Endings::atOnce);
    start();
    speak("one");
    EXPECT_EQ(ears->waitForEnds(1), "F");
    const auto names = [this] {
        return std::ranges::count_if(
            server.commands(), [](auto& command) { return command.starts_with("SET SELF CLIENT_NAME"); });
    };
    server.hangAt("SET SELF CLIENT_NAME");
    speak({"two", SpeechVoice{"de-DE"}, 0.5});
    ASSERT_TRUE(eventually([&] { return names() == 2; }));
    ASSERT_TRUE(server.waitForConnections(1)) << "the one that hangs";
    runEvents();
    runEvents();
    server.resume();
    EXPECT_EQ(ears->waitForEnds(2), "FF");
    EXPECT_EQ(names(), 3) << "the hanging one is counted when it goes on, too";
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
