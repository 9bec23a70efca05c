// What every test of the voice needs: ears, a log and the adapter.
#pragma once

#include "helpers/EventLoop.h"
#include "helpers/RecordingLog.h"
#include "platform/linux/speech/SpeechDispatcherSynthesizer.h"
#include "platform/linux/system/QtMainQueue.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>

namespace sonvara::test {

/// Hears of the ends of lines, and fails the test when there are more ends than lines.
class Ears final : public SpeechSynthesizerDelegate {
public:
    void didFinish() override { hear('F'); }
    void didCancel() override { hear('C'); }

    /// The ends so far: F for finished, C for cancelled.
    [[nodiscard]] std::string ends() const { return ends_; }

    /// Waits for `count` ends and returns all there are; gives up after a while.
    std::string waitForEnds(std::size_t count,
                            std::chrono::milliseconds limit = std::chrono::seconds(10)) const
    {
        eventually([&] { return ends_.size() >= count; }, limit);
        return ends_;
    }

    void expectOneMore() { ++expected_; }

private:
    void hear(char end)
    {
        ends_ += end;
        EXPECT_LE(ends_.size(), expected_) << "a line ended twice";
    }

    std::string ends_;
    std::size_t expected_ = 0;
};

class FixedEnvironment final : public Environment {
public:
    [[nodiscard]] Variables variables() const override { return values; }
    Variables values;
};

/// The main queue, which counts the tasks that it has run.
class CountingQueue final : public MainQueue {
public:
    void post(Task task) override
    {
        queue_.post([this, task = std::move(task)] {
            task();
            ++ran;
        });
    }
    [[nodiscard]] std::shared_ptr<RepeatingTimer> scheduleTimer(std::chrono::milliseconds interval,
                                                                Task action) override
    {
        return queue_.scheduleTimer(interval, std::move(action));
    }
    int ran = 0;

private:
    QtMainQueue queue_;
};

class SpeechFixture : public ::testing::Test {
protected:
    void start(SpeechTimes times = {})
    {
        voice = std::make_unique<SpeechDispatcherSynthesizer>(mainQueue, log, environment, times);
        voice->setDelegate(ears);
    }

    void speak(const std::string& line) { speak(SpeechUtterance{line, std::nullopt, 0.5}); }
    void speak(SpeechUtterance utterance)
    {
        ears->expectOneMore();
        voice->speak(std::move(utterance));
    }

    /// Waits until the voice has heard so much in all of its connections: that one is open, and a line's ways.
    [[nodiscard]] bool hasHeard(int count) const
    {
        return eventually([&] { return mainQueue.ran >= count; });
    }

    CountingQueue mainQueue;
    RecordingLog log;
    FixedEnvironment environment;
    std::shared_ptr<Ears> ears = std::make_shared<Ears>();
    std::unique_ptr<SpeechDispatcherSynthesizer> voice;
};

}  // namespace sonvara::test
