// The voice that counts its lines: nothing that it passes on is changed or held back.
#include "ModelDesktop.h"

#include "fakes/FakeVoice.h"
#include "volume/CountedVoice.h"

#include <gtest/gtest.h>

#include <memory>

namespace sonvara::test {
namespace {

struct Ends final : SpeechSynthesizerDelegate {
    int finished = 0;
    int cancelled = 0;
    void didFinish() override { ++finished; }
    void didCancel() override { ++cancelled; }
};

/// Speaks nothing; the test reports the ends.
struct OwnVoice final : SpeechSynthesizer {
    std::weak_ptr<SpeechSynthesizerDelegate> delegate;
    void setDelegate(std::weak_ptr<SpeechSynthesizerDelegate> to) override { delegate = std::move(to); }
    void speak(SpeechUtterance) override {}
    void stopSpeaking() override {}
    [[nodiscard]] std::string currentLanguageCode() const override { return "la"; }
    [[nodiscard]] std::optional<SpeechVoice> voiceForLanguage(const std::string& code) const override
    {
        return SpeechVoice{code};
    }
};

class CountedVoiceTest : public testing::Test {
protected:
    VirtualTime time;
    FakeVoice below{time};
    ModelDesktop desktop;
    ModelPlayer player{desktop.schedule, {}};
    std::shared_ptr<Ends> ends = std::make_shared<Ends>();
    std::unique_ptr<CountedVoice> voice;

    CountedVoiceTest()
    {
        desktop.start();
        const auto run = desktop.add(player, "org.mpris.MediaPlayer2.test");
        player.play();
        desktop.schedule.pass(5s);
        voice = std::make_unique<CountedVoice>(below, time, *desktop.loweredPlayers);
        voice->setDelegate(ends);
        desktop.loweredPlayers->duck("Music", {run, 1.0, true}, 35);
    }
    /// Whether `LoweredPlayers` counts a line: the player is low exactly then.
    bool isLow()
    {
        desktop.schedule.pass(200ms);
        return player.sound() < 1;
    }
};

TEST_F(CountedVoiceTest, ALineCountsFromItsBeginToItsEnd)
{
    EXPECT_FALSE(isLow());
    voice->speak({"Now playing", SpeechVoice{"a voice"}});
    EXPECT_EQ(below.current(), "Now playing");
    EXPECT_TRUE(isLow());
    below.finish();
    time.run();
    EXPECT_EQ(ends->finished, 1);
    EXPECT_FALSE(isLow());
}

TEST_F(CountedVoiceTest, EachLineCounts)
{
    voice->speak({"One", std::nullopt});
    voice->speak({"Two", std::nullopt});
    below.finish();
    time.run();
    EXPECT_TRUE(isLow());
    voice->stopSpeaking();
    time.run();
    EXPECT_EQ(ends->cancelled, 1);
    EXPECT_FALSE(isLow());
}

TEST_F(CountedVoiceTest, AnEndIsToldAtOnceWhereverItComes)
{
    OwnVoice own;
    CountedVoice counted(own, time, *desktop.loweredPlayers);
    counted.setDelegate(ends);
    EXPECT_EQ(counted.currentLanguageCode(), "la");
    EXPECT_EQ(counted.voiceForLanguage("la")->identifier, "la");
    counted.speak({"One", std::nullopt});
    const auto hears = own.delegate.lock();
    std::thread([&hears] { hears->didCancel(); }).join();
    EXPECT_EQ(ends->cancelled, 1) << "before the main queue has come to it";
    EXPECT_TRUE(isLow());
    time.run();
    EXPECT_FALSE(isLow());
}

TEST_F(CountedVoiceTest, AnEndThatWaitsForTheMainThreadHoldsNothing)
{
    OwnVoice own;
    {
        CountedVoice counted(own, time, *desktop.loweredPlayers);
        counted.speak({"One", std::nullopt});
        own.delegate.lock()->didFinish();
    }
    EXPECT_TRUE(own.delegate.expired());
}

TEST_F(CountedVoiceTest, WhoHearsOfAnEndMayNameAnotherListener)
{
    struct Leaving final : SpeechSynthesizerDelegate {
        CountedVoice& voice;
        explicit Leaving(CountedVoice& heard) : voice(heard) {}
        void didFinish() override { voice.setDelegate({}); }
        void didCancel() override {}
    };
    const auto leaving = std::make_shared<Leaving>(*voice);
    voice->setDelegate(leaving);
    voice->speak({"One", std::nullopt});
    below.finish();
    time.run();
    EXPECT_FALSE(isLow());
}

TEST_F(CountedVoiceTest, SpeaksAndCountsNothingOnceItIsClosed)
{
    voice->close();
    voice->speak({"Now playing", std::nullopt});
    voice->stopSpeaking();
    EXPECT_EQ(below.current(), "");
    EXPECT_FALSE(isLow());
    EXPECT_EQ(voice->currentLanguageCode(), "");
    EXPECT_FALSE(voice->voiceForLanguage("la"));
}

TEST_F(CountedVoiceTest, AnEndThatComesAfterTheVoiceHasGoneDoesNothing)
{
    voice->speak({"One", std::nullopt});
    below.finish();
    voice.reset();
    desktop.loweredPlayers.reset();
    time.run();
    EXPECT_EQ(ends->finished, 0);
}

}  // namespace
}  // namespace sonvara::test
