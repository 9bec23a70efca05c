// One end for each line, whatever the voice reports; in virtual time.
#include "platform/macos/speech/SpokenLines.h"

#include "fakes/VirtualTime.h"

#include <gtest/gtest.h>

#include <vector>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;
using Texts = std::vector<std::string>;

/// Speaks until the test says so.
struct Speaker final : LineSpeaker {
    void speak(LineNumber number, const SpeechUtterance& utterance) override
    {
        last = number;
        spoken.push_back(utterance.line);
    }
    void cut() override { ++cuts; }

    LineNumber last = 0;
    Texts spoken;
    int cuts = 0;
};

struct Listener final : SpeechSynthesizerDelegate {
    void didFinish() override { ++finished; }
    void didCancel() override { ++cancelled; }
    int finished = 0;
    int cancelled = 0;
};

class SpokenLinesTest : public testing::Test {
protected:
    SpokenLinesTest() { lines_->setDelegate(listener_); }

    void speak(const std::string& line) { lines_->speak({line, std::nullopt}); }
    void finish() { lines_->ended(speaker_.last, &SpeechSynthesizerDelegate::didFinish); }
    void reportCut() { lines_->ended(speaker_.last, &SpeechSynthesizerDelegate::didCancel); }

    VirtualTime time_;
    Speaker speaker_;
    std::shared_ptr<Listener> listener_ = std::make_shared<Listener>();
    std::shared_ptr<SpokenLines> lines_ = std::make_shared<SpokenLines>(
        speaker_,
        [this](std::chrono::milliseconds delay, std::function<void()> task) {
            (void)time_.postAfter(QualityOfService::standard, delay,
                                  [this, task = std::move(task)] { time_.post(task); });
        },
        SpokenLines::Times{{1000ms, 100ms, 500ms}, 300ms});
};

TEST_F(SpokenLinesTest, GivesTheVoiceOneLineAtATime)
{
    speak("one");
    speak("two");
    EXPECT_EQ(speaker_.spoken, Texts{"one"});
    finish();
    EXPECT_EQ(speaker_.spoken, (Texts{"one", "two"}));
    finish();
    EXPECT_EQ(listener_->finished, 2);
    EXPECT_EQ(listener_->cancelled, 0);
}

TEST_F(SpokenLinesTest, ALineWhoseEndNeverComesIsOverWhenItsTimeIs)
{
    speak("ten chars.");  // 1 s and ten times 0.1 s
    speak("next");
    time_.advance(1990ms);
    EXPECT_EQ(listener_->finished, 0);
    time_.advance(20ms);
    EXPECT_EQ(listener_->finished, 1);
    EXPECT_EQ(speaker_.cuts, 1);
    time_.advance(300ms);
    EXPECT_EQ(speaker_.spoken, (Texts{"ten chars.", "next"}));
    finish();
    EXPECT_EQ(listener_->finished, 2);
}

TEST_F(SpokenLinesTest, AStopCancelsEveryLineAtOnce)
{
    speak("one");
    speak("two");
    lines_->stop();
    EXPECT_EQ(listener_->cancelled, 2);
    EXPECT_EQ(speaker_.cuts, 1);
    reportCut();
    lines_->stop();
    EXPECT_EQ(listener_->cancelled, 2);
    EXPECT_EQ(speaker_.cuts, 1);
    EXPECT_EQ(speaker_.spoken, Texts{"one"});
}

TEST_F(SpokenLinesTest, TheNextLineWaitsUntilTheVoiceHasCutTheLastOne)
{
    speak("one");
    lines_->stop();
    speak("two");
    EXPECT_EQ(speaker_.spoken, Texts{"one"});
    reportCut();
    EXPECT_EQ(speaker_.spoken, (Texts{"one", "two"}));
    EXPECT_EQ(listener_->cancelled, 1);
}

TEST_F(SpokenLinesTest, AVoiceThatDoesNotReportTheCutIsWaitedForOnlyBriefly)
{
    speak("one");
    lines_->stop();
    speak("two");
    time_.advance(310ms);
    EXPECT_EQ(speaker_.spoken, (Texts{"one", "two"}));
    finish();
    EXPECT_EQ(listener_->finished, 1);
    EXPECT_EQ(listener_->cancelled, 1);
}

TEST_F(SpokenLinesTest, ALateReportOfALineThatWasStoppedIsNoNews)
{
    speak("one");
    const auto first = speaker_.last;
    lines_->stop();
    speak("two");
    time_.advance(310ms);
    lines_->ended(first, &SpeechSynthesizerDelegate::didFinish);
    EXPECT_EQ(listener_->finished, 0);
    EXPECT_EQ(listener_->cancelled, 1);
    time_.advance(10s);
    EXPECT_EQ(listener_->finished, 1) << "the second line's own end";
}

TEST_F(SpokenLinesTest, AStopWhileTheVoiceCutsCancelsWhatWaits)
{
    speak("one");
    lines_->stop();
    speak("two");
    lines_->stop();
    EXPECT_EQ(listener_->cancelled, 2);
    time_.advance(10s);
    EXPECT_EQ(speaker_.spoken, Texts{"one"});
    EXPECT_EQ(listener_->finished, 0);
}

}  // namespace
}  // namespace sonvara::test
