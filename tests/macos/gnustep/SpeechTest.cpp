// Lines on the way to the system's voice, and the reports of their ends.
#include "Probe.h"
#include "StandInTest.h"
#include "platform/macos/speech/AppleSpeechSynthesizer.h"

#include <atomic>

namespace sonvara::test {
namespace {

using standins::CancelReports;

struct Listener final : SpeechSynthesizerDelegate {
    std::atomic<int> finished = 0;
    std::atomic<int> cancelled = 0;
    void didFinish() override { ++finished; }
    void didCancel() override { ++cancelled; }
    [[nodiscard]] int ended() const { return finished + cancelled; }
};

class AppleSpeechSynthesizerTest : public StandInTest {
protected:
    AppleSpeechSynthesizerTest()
    {
        voice_.setDelegate(listener_);
        standins::setVoices({.finishesAtOnce = false});
    }

    /// Lets reports that are still on their way arrive: a further line's report comes after them.
    void settle()
    {
        const int before = listener_->finished;
        voice_.speak({.line = "last", .voice = {}});
        standins::finishLine();
        ASSERT_TRUE(probe::runUntil([&] { return listener_->finished > before; }));
    }

    std::shared_ptr<Listener> listener_ = std::make_shared<Listener>();
    AppleSpeechSynthesizer voice_;
};

TEST_F(AppleSpeechSynthesizerTest, SpeaksWithTheVoiceAndRateOfTheUtterance)
{
    voice_.speak({.line = "Up next", .voice = voice_.voiceForLanguage("de-DE"), .rate = 0.5});
    const auto lines = standins::spokenLines();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].line, "Up next");
    EXPECT_EQ(lines[0].voice, "voice.de-DE");
    EXPECT_EQ(lines[0].rate, 0.5F);
}

TEST_F(AppleSpeechSynthesizerTest, KnowsTheLanguageAndWhichVoicesAreMissing)
{
    standins::setVoices({.currentLanguage = "fr-CA", .languages = {"de-DE"}});
    EXPECT_EQ(voice_.currentLanguageCode(), "fr-CA");
    EXPECT_FALSE(voice_.voiceForLanguage("fr-CA"));
    EXPECT_EQ(voice_.voiceForLanguage("de-DE")->identifier, "voice.de-DE");
}

TEST_F(AppleSpeechSynthesizerTest, SpeaksWithTheDefaultVoiceWhenTheOneIsGone)
{
    voice_.speak({.line = "Up next", .voice = SpeechVoice{"voice.removed"}});
    EXPECT_EQ(standins::spokenLines().at(0).voice, "");
}

TEST_F(AppleSpeechSynthesizerTest, ReportsTheEndOfEachLine)
{
    voice_.speak({.line = "one", .voice = {}});
    voice_.speak({.line = "two", .voice = {}});
    standins::finishLine();
    standins::finishLine();
    ASSERT_TRUE(probe::runUntil([&] { return listener_->finished == 2; }));
    EXPECT_EQ(listener_->cancelled, 0);
}

TEST_F(AppleSpeechSynthesizerTest, StoppingWithNothingUnderWayReportsNothing)
{
    voice_.stopSpeaking();
    settle();
    EXPECT_EQ(listener_->cancelled, 0);
}

class StopTest : public AppleSpeechSynthesizerTest, public testing::WithParamInterface<CancelReports> {};

TEST_P(StopTest, ReportsEachLineAsCancelledOnceWhateverTheSystemReports)
{
    standins::setVoices({.finishesAtOnce = false, .cancelReports = GetParam()});
    voice_.speak({.line = "one", .voice = {}});
    voice_.speak({.line = "two", .voice = {}});
    voice_.stopSpeaking();
    ASSERT_TRUE(probe::runUntil([&] { return listener_->cancelled == 2; }));
    settle();
    EXPECT_EQ(listener_->cancelled, 2);
    EXPECT_EQ(listener_->finished, 1);
}

INSTANTIATE_TEST_SUITE_P(Reports, StopTest,
                         testing::Values(CancelReports::all, CancelReports::currentOnly,
                                         CancelReports::none));

TEST_F(AppleSpeechSynthesizerTest, HoldsItsDelegateWeakly)
{
    voice_.speak({.line = "one", .voice = {}});
    const std::weak_ptr<Listener> watched = listener_;
    listener_ = nullptr;
    EXPECT_TRUE(watched.expired());
    voice_.stopSpeaking();
}

}  // namespace
}  // namespace sonvara::test
