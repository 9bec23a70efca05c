// Lines on the way to the system's voice, and the reports of their ends.
#include "Probe.h"
#include "StandInTest.h"
#include "platform/macos/speech/AppleSpeechSynthesizer.h"
#include "platform/macos/system/DispatchGlobalQueue.h"
#include "platform/macos/system/DispatchMainQueue.h"

#include <atomic>

namespace sonvara::test {
namespace {

using standins::CutReport;
using namespace std::chrono_literals;

struct Listener final : SpeechSynthesizerDelegate {
    std::atomic<int> finished = 0;
    std::atomic<int> cancelled = 0;
    void didFinish() override { ++finished; }
    void didCancel() override { ++cancelled; }
};

class AppleSpeechSynthesizerTest : public StandInTest {
protected:
    AppleSpeechSynthesizerTest()
    {
        standins::setVoices({.finishesAtOnce = false});
        make({});
    }

    void make(const SpokenLines::Times& times)
    {
        voice_ = std::make_unique<AppleSpeechSynthesizer>(workers_, mainQueue_, times);
        voice_->setDelegate(listener_);
    }
    void speak(const std::string& line) { voice_->speak({.line = line, .voice = {}}); }
    static bool hears(const std::vector<std::string>& lines)
    {
        return probe::runUntil([&lines] { return standins::heardLines() == lines; });
    }
    bool knowsLanguage(const std::string& language)
    {
        return probe::runUntil([&] { return voice_->currentLanguageCode() == language; });
    }

    // A line's deadline comes long after its test, and finds nobody; the queues are there until the end.
    inline static DispatchGlobalQueue workers_;
    inline static DispatchMainQueue mainQueue_;
    std::shared_ptr<Listener> listener_ = std::make_shared<Listener>();
    std::unique_ptr<AppleSpeechSynthesizer> voice_;
};

TEST_F(AppleSpeechSynthesizerTest, SpeaksWithTheVoiceAndRateOfTheUtterance)
{
    ASSERT_TRUE(knowsLanguage("en-GB"));
    voice_->speak({.line = "Up next", .voice = voice_->voiceForLanguage("en-GB"), .rate = 0.5});
    const auto lines = standins::spokenLines();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].line, "Up next");
    EXPECT_EQ(lines[0].voice, "voice.en-GB");
    EXPECT_EQ(lines[0].rate, 0.5F);
}

TEST_F(AppleSpeechSynthesizerTest, KnowsTheLanguageAndThatItHasNoVoice)
{
    standins::setVoices({.currentLanguage = "fr-CA", .languages = {"de-DE"}});
    make({});
    ASSERT_TRUE(knowsLanguage("fr-CA"));
    EXPECT_FALSE(voice_->voiceForLanguage("fr-CA"));
    EXPECT_FALSE(voice_->voiceForLanguage("de-DE")) << "it is not the current one";
}

TEST_F(AppleSpeechSynthesizerTest, LooksUpTheVoiceAnewForTheNextLine)
{
    ASSERT_TRUE(knowsLanguage("en-GB"));
    standins::setVoices({.currentLanguage = "de-DE", .finishesAtOnce = false});
    EXPECT_EQ(voice_->currentLanguageCode(), "en-GB");
    speak("one");
    ASSERT_TRUE(knowsLanguage("de-DE"));
    EXPECT_EQ(voice_->voiceForLanguage("de-DE")->identifier, "voice.de-DE");
}

TEST_F(AppleSpeechSynthesizerTest, SpeaksWithTheDefaultVoiceWhenTheOneIsGone)
{
    voice_->speak({.line = "Up next", .voice = SpeechVoice{"voice.removed"}});
    EXPECT_EQ(standins::spokenLines().at(0).voice, "");
}

TEST_F(AppleSpeechSynthesizerTest, ReportsTheEndOfEachLine)
{
    speak("one");
    speak("two");
    ASSERT_TRUE(hears({"one"}));
    standins::finishLine();
    ASSERT_TRUE(hears({"one", "two"}));
    standins::finishLine();
    ASSERT_TRUE(probe::runUntil([&] { return listener_->finished == 2; }));
    EXPECT_EQ(listener_->cancelled, 0);
}

TEST_F(AppleSpeechSynthesizerTest, ALineOfWhichNoEndIsReportedIsOverWhenItsTimeIs)
{
    make({{50ms, 1ms, 1ms}, 50ms});
    speak("one");
    ASSERT_TRUE(probe::runUntil([&] { return listener_->finished == 1; }));
    speak("two");
    EXPECT_TRUE(hears({"one", "two"}));
}

class CutTest : public AppleSpeechSynthesizerTest, public testing::WithParamInterface<CutReport> {};

// The new line in the same turn as the stop: a voice that has not cut the old one yet would swallow it.
TEST_P(CutTest, EndsEachLineOnceAndSpeaksTheNextOneWhateverTheVoiceReports)
{
    standins::setVoices({.finishesAtOnce = false, .cutReport = GetParam(), .swallowsAfterCut = true});
    // Nothing but its report, if there is one, may tell that the voice has cut the line.
    if (GetParam() != CutReport::none) make({.speaking = {}, .cutting = 1h});
    speak("one");
    speak("never begun");
    voice_->stopSpeaking();
    speak("two");
    EXPECT_EQ(listener_->cancelled, 2);
    ASSERT_TRUE(hears({"one", "two"}));
    standins::finishLine();
    ASSERT_TRUE(probe::runUntil([&] { return listener_->finished == 1; }));
    EXPECT_EQ(listener_->cancelled, 2);
}

INSTANTIATE_TEST_SUITE_P(Reports, CutTest,
                         testing::Values(CutReport::cancelled, CutReport::finished, CutReport::none));

TEST_F(AppleSpeechSynthesizerTest, HoldsItsDelegateWeakly)
{
    speak("one");
    const std::weak_ptr<Listener> watched = listener_;
    listener_ = nullptr;
    EXPECT_TRUE(watched.expired());
    voice_->stopSpeaking();
}

}  // namespace
}  // namespace sonvara::test
