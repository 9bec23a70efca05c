// The port's contract: one end for each line, order, stopping.
#include "StubFixture.h"

#include <algorithm>

namespace sonvara::test {

class SpeechContractTest : public StubFixture {};

TEST_F(SpeechContractTest, speaksOneLineAfterTheOther)
{
    start();
    speak("one");
    speak("two");
    ASSERT_TRUE(server.waitForLines(1));
    EXPECT_EQ(ears->ends(), "");
    server.tell("702 END");
    ASSERT_TRUE(server.waitForLines(2));
    EXPECT_EQ(ears->waitForEnds(1), "F");
    server.tell("702 END");
    EXPECT_EQ(ears->waitForEnds(2), "FF");
    EXPECT_EQ(server.lines(), (std::vector<std::string>{"one", "two"}));
    EXPECT_TRUE(log.messages().empty());
}

TEST_F(SpeechContractTest, takesAnEndThatComesBeforeTheLinesNumber)
{
    server.setEndings(Endings::atOnce);
    start();
    for (int i = 0; i < 20; ++i) speak("line");
    EXPECT_EQ(ears->waitForEnds(20), std::string(20, 'F'));
    EXPECT_EQ(server.lines().size(), 20U);
}

TEST_F(SpeechContractTest, endsALineWithNothingToSayWithoutConnecting)
{
    start();
    speak("");
    speak(" \n\t ");
    EXPECT_EQ(ears->waitForEnds(2), "FF");
    EXPECT_TRUE(server.commands().empty());
}

TEST_F(SpeechContractTest, keepsTheOrderOfLinesThatHaveNothingToSay)
{
    start();
    speak("one");
    speak("");
    ASSERT_TRUE(server.waitForLines(1));
    EXPECT_EQ(ears->ends(), "");
    server.tell("703 CANCELED");
    EXPECT_EQ(ears->waitForEnds(2), "CF");
}

TEST_F(SpeechContractTest, stopsTheCurrentLineAndNeverSendsTheWaitingOnes)
{
    start();
    speak("current");
    speak("waiting");
    speak("waiting too");
    ASSERT_TRUE(server.waitForLines(1));
    voice->stopSpeaking();
    EXPECT_EQ(ears->waitForEnds(3), "CCC");
    speak("later");
    ASSERT_TRUE(server.waitForLines(2));
    EXPECT_EQ(server.lines(), (std::vector<std::string>{"current", "later"}));
}

TEST_F(SpeechContractTest, neverSendsALineThatWasStoppedWhileItWasConnectedTo)
{
    start();
    server.hangAt("SET SELF CLIENT_NAME");
    speak("stopped");
    ASSERT_TRUE(server.waitForCommand("SET SELF CLIENT_NAME"));
    voice->stopSpeaking();
    EXPECT_EQ(ears->waitForEnds(1), "C");
    server.resume();
    speak("later");
    ASSERT_TRUE(server.waitForLines(1));
    EXPECT_EQ(server.lines(), std::vector<std::string>{"later"});
    EXPECT_EQ(ears->ends(), "C");
    EXPECT_EQ(std::ranges::count(server.commands(), "CANCEL SELF"), 0) << "there was nothing to silence";
}

TEST_F(SpeechContractTest, aLineSentIntoAPauseOfTheDaemonIsCancelledThere)
{
    start();
    server.hangAt("SPEAK");
    speak("stopped");
    ASSERT_TRUE(server.waitForCommand("SPEAK"));
    voice->stopSpeaking();
    EXPECT_EQ(ears->waitForEnds(1), "C");
    speak("later");
    server.resume();
    ASSERT_TRUE(server.waitForLines(2));
    const auto commands = server.commands();
    const auto cancel = std::ranges::find(commands, "CANCEL SELF");
    EXPECT_EQ(std::count(commands.begin(), cancel, "SPEAK"), 2) << "the line, held and resumed";
    EXPECT_EQ(std::count(cancel, commands.end(), "SPEAK"), 1);
    server.tell("702 END");
    EXPECT_EQ(ears->waitForEnds(2), "CF");
}

TEST_F(SpeechContractTest, stopCancelsOnlyWhatCameBefore)
{
    start();
    speak("before");
    ASSERT_TRUE(server.waitForLines(1));
    voice->stopSpeaking();
    speak("after");
    ASSERT_TRUE(server.waitForLines(2));
    server.tell("702 END");
    EXPECT_EQ(ears->waitForEnds(2), "CF");
    const auto commands = server.commands();
    EXPECT_EQ(std::ranges::count(commands, "CANCEL SELF"), 1);
}

TEST_F(SpeechContractTest, ignoresTheLateCancelOfAStoppedLine)
{
    server.setEndings(Endings::atNextLine);
    start();
    speak("before");
    ASSERT_TRUE(server.waitForLines(1));
    voice->stopSpeaking();
    speak("after");
    ASSERT_TRUE(server.waitForLines(2));
    server.tell("702 END");
    EXPECT_EQ(ears->waitForEnds(2), "CF");
}

TEST_F(SpeechContractTest, stopWithNothingUnderWayDoesNothing)
{
    server.setEndings(Endings::atOnce);
    start();
    voice->stopSpeaking();
    speak("one");
    EXPECT_EQ(ears->waitForEnds(1), "F");
    voice->stopSpeaking();
    speak("two");
    EXPECT_EQ(ears->waitForEnds(2), "FF");
    EXPECT_EQ(std::ranges::count(server.commands(), "CANCEL SELF"), 0);
}

TEST_F(SpeechContractTest, reportsALineThatAnotherProgramCancelled)
{
    start();
    speak("one");
    ASSERT_TRUE(server.waitForLines(1));
    server.tell("703 CANCELED");
    EXPECT_EQ(ears->waitForEnds(1), "C");
}

TEST_F(SpeechContractTest, takesNoOtherEventForAnEnd)
{
    start();
    speak("one");
    ASSERT_TRUE(server.waitForLines(1));
    for (const char* event : {"704 PAUSED", "705 RESUMED", "701 BEGIN"}) server.tell(event);
    server.tell("702 END");
    server.tell("702 END");
    server.tell("703 CANCELED");
    EXPECT_EQ(ears->waitForEnds(1), "F");
    speak("two");
    ASSERT_TRUE(server.waitForLines(2));
    EXPECT_EQ(ears->ends(), "F");
}

TEST_F(SpeechContractTest, silencesTheLineWhenItGoes)
{
    start();
    speak("current");
    speak("waiting");
    ASSERT_TRUE(server.waitForLines(1));
    voice.reset();
    EXPECT_EQ(ears->ends(), "CC");
    EXPECT_TRUE(server.waitForCommand("CANCEL SELF"));
    EXPECT_TRUE(server.waitForConnections(0));
}

TEST_F(SpeechContractTest, goesAsSoonAsTheLineIsSilent)
{
    SpeechTimes times;
    times.quitLimit = std::chrono::minutes(1);
    start(times);
    speak("one");
    ASSERT_TRUE(server.waitForLines(1));
    const auto before = std::chrono::steady_clock::now();
    voice.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(20));
}

TEST_F(SpeechContractTest, speaksOnWhenItsDelegateHasGone)
{
    start();
    speak("one");
    ASSERT_TRUE(server.waitForLines(1));
    ears = std::make_shared<Ears>();
    server.tell("702 END");
    speak("two");
    ASSERT_TRUE(server.waitForLines(2));
    voice->setDelegate(ears);
    server.tell("702 END");
    EXPECT_EQ(ears->waitForEnds(1), "F");
}

}  // namespace sonvara::test
