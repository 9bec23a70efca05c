// A voice whose lines end no sooner than players are lowered, in virtual time.
#include "volume/PatientVoice.h"

#include "fakes/FakeVoice.h"
#include "fakes/VirtualTime.h"

#include <gmock/gmock.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

struct Listener : SpeechSynthesizerDelegate {
    std::vector<std::string> heard;
    void didFinish() override { heard.emplace_back("finished"); }
    void didCancel() override { heard.emplace_back("cancelled"); }
};

class PatientVoiceTest : public testing::Test {
protected:
    VirtualTime time;
    FakeVoice voice{time};
    PatientVoice patient{voice, time};
    std::shared_ptr<Listener> listener = std::make_shared<Listener>();

    PatientVoiceTest() { patient.setDelegate(listener); }
    ~PatientVoiceTest() override { time.end(); }
    void speak(const std::string& line) { patient.speak({line, std::nullopt, 0.5}); }
};

TEST_F(PatientVoiceTest, AnEndAfterASecondIsHeardAtOnce)
{
    speak("one");
    time.advance(1s);
    voice.finish();
    EXPECT_THAT(listener->heard, IsEmpty());
    time.run();
    EXPECT_THAT(listener->heard, ElementsAre("finished"));
}

TEST_F(PatientVoiceTest, AnEndWithinTheFirstSecondIsHeardAfterIt)
{
    speak("one");
    voice.finish();
    time.advance(999ms);
    EXPECT_THAT(listener->heard, IsEmpty());
    time.advance(1ms);
    EXPECT_THAT(listener->heard, ElementsAre("finished"));
}

TEST_F(PatientVoiceTest, EachLineHasItsOwnSecondAndItsOwnEnd)
{
    speak("one");
    time.advance(600ms);
    patient.stopSpeaking();
    speak("two");
    time.advance(200ms);
    voice.finish();
    time.advance(200ms);
    EXPECT_THAT(listener->heard, ElementsAre("cancelled"));
    time.advance(600ms);
    EXPECT_THAT(listener->heard, ElementsAre("cancelled", "finished"));
}

TEST_F(PatientVoiceTest, LinesThatWaitEndWithTheirOwnEnds)
{
    speak("one");
    speak("two");
    time.advance(3s);
    EXPECT_THAT(listener->heard, IsEmpty());
    voice.finish();
    time.run();
    EXPECT_THAT(listener->heard, ElementsAre("finished"));
    patient.stopSpeaking();
    time.run();
    EXPECT_THAT(listener->heard, ElementsAre("finished", "cancelled"));
}

TEST_F(PatientVoiceTest, ALineIsHandedOverBeforeItsSecondBegins)
{
    voice.onSpeak = [this](const std::string&) { EXPECT_EQ(time.pendingWork(), 0U); };
    speak("one");
    EXPECT_EQ(time.pendingWork(), 1U);
}

TEST_F(PatientVoiceTest, NobodyNeedListen)
{
    speak("one");
    listener.reset();
    voice.finish();
    time.advance(2s);
    EXPECT_FALSE(voice.isSpeaking());
}

}  // namespace
}  // namespace sonvara::test
