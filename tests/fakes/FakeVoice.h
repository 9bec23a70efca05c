// A speech synthesizer whose lines end when the test says so.
#pragma once

#include "fakes/VirtualTime.h"
#include "ports/SpeechSynthesizer.h"

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace sonvara::test {

/// Speaks one line at a time and reports each end exactly once, on a worker, or, as real ones do, on a thread of its own.
class FakeVoice final : public SpeechSynthesizer {
public:
    enum class Ending { none, finished, cancelled };
    static constexpr auto reportsAt = QualityOfService::standard;  ///< unless it has a thread
    struct Line {
        SpeechUtterance utterance;
        Ending ending = Ending::none;
        VirtualTime::Duration handedOver{0};
    };

    explicit FakeVoice(VirtualTime& time) : time_(time) {}

    void setDelegate(std::weak_ptr<SpeechSynthesizerDelegate> delegate) override
    {
        delegate_ = std::move(delegate);
    }

    void speak(SpeechUtterance utterance) override
    {
        EXPECT_TRUE(time_.isMainThread());
        if (onSpeak) onSpeak(utterance.line);
        lines.push_back({std::move(utterance), Ending::none, time_.elapsed()});
        waiting_.push_back(lines.size() - 1);
    }

    void stopSpeaking() override
    {
        EXPECT_TRUE(time_.isMainThread());
        ++stops;
        for (const auto line : std::exchange(waiting_, {})) end(line, Ending::cancelled);
    }

    [[nodiscard]] std::string currentLanguageCode() const override { return languageCode; }
    [[nodiscard]] std::optional<SpeechVoice> voiceForLanguage(const std::string& code) const override
    {
        EXPECT_EQ(code, languageCode);
        return voice;
    }

    /// Test: whether a line is being spoken.
    [[nodiscard]] bool isSpeaking() const { return !waiting_.empty(); }
    /// Test: the line that is being spoken, or nothing.
    [[nodiscard]] std::string current() const
    {
        return waiting_.empty() ? std::string() : lines[waiting_.front()].utterance.line;
    }
    /// Test: the current line ends by itself.
    void finish()
    {
        ASSERT_TRUE(isSpeaking());
        const auto line = waiting_.front();
        waiting_.pop_front();
        end(line, Ending::finished);
    }

    std::function<void(const std::string&)> onSpeak;  ///< Test: hears of each line as it is handed over
    std::vector<Line> lines;                          ///< everything handed over, in order
    int stops = 0;                                    ///< how often it was asked to stop
    bool hasThread = false;  ///< it reports at once, on another thread, while the main thread waits
    std::string languageCode = "en-US";
    std::optional<SpeechVoice> voice = SpeechVoice{"voice for en-US"};

private:
    void end(std::size_t line, Ending ending)
    {
        ASSERT_EQ(lines[line].ending, Ending::none) << "a line ends once";
        lines[line].ending = ending;
        const auto report = [delegate = delegate_, ending] {
            const auto alive = delegate.lock();
            if (!alive) return;
            ending == Ending::finished ? alive->didFinish() : alive->didCancel();
        };
        if (hasThread) {
            std::thread(report).join();
        } else {
            time_.post(reportsAt, report);
        }
    }

    VirtualTime& time_;
    std::weak_ptr<SpeechSynthesizerDelegate> delegate_;
    std::deque<std::size_t> waiting_;
};

}  // namespace sonvara::test
