// What stands around `VolumeScripts` and `VolumeGuard`; nothing happens before the test says so.
#pragma once

#include "ports/Queues.h"
#include "ports/ScriptRunner.h"
#include "ports/SpeechSynthesizer.h"
#include "ports/System.h"
#include "support/PlayerScripts.h"
#include "volume/NoteStore.h"
#include "volume/VolumePlayers.h"

#include <chrono>
#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace sonvara::test {

inline const std::string getVolume = volumeScript({musicSource, std::nullopt});
inline const std::string setVolumeTo28 = volumeScript({musicSource, 28});
inline constexpr const char* testPlayer = "org.mpris.MediaPlayer2.test";

class HeldMainQueue final : public MainQueue {
public:
    void post(Task task) override
    {
        const std::lock_guard lock(mutex_);
        tasks_.push_back(std::move(task));
    }
    [[nodiscard]] std::shared_ptr<RepeatingTimer> scheduleTimer(std::chrono::milliseconds, Task) override
    {
        return nullptr;
    }
    [[nodiscard]] bool isEmpty()
    {
        const std::lock_guard lock(mutex_);
        return tasks_.empty();
    }
    /// Runs what is there, and what that posts.
    void run()
    {
        while (const auto task = next()) task();
    }

private:
    Task next()
    {
        const std::lock_guard lock(mutex_);
        if (tasks_.empty()) return {};
        auto task = std::move(tasks_.front());
        tasks_.pop_front();
        return task;
    }

    std::mutex mutex_;
    std::deque<Task> tasks_;
};

struct HeldWorkers final : GlobalQueue {
    struct Work final : DelayedTask {
        QualityOfService quality{};
        std::chrono::milliseconds delay{};
        Task task;
        bool isCancelled = false;

        void cancel() override { isCancelled = true; }
    };

    std::vector<std::shared_ptr<Work>> now;
    std::vector<std::shared_ptr<Work>> later;

    void post(QualityOfService quality, Task task) override
    {
        now.push_back(made(quality, {}, std::move(task)));
    }
    std::shared_ptr<DelayedTask> postAfter(QualityOfService quality, std::chrono::milliseconds delay,
                                           Task task) override
    {
        later.push_back(made(quality, delay, std::move(task)));
        return later.back();
    }

private:
    static std::shared_ptr<Work> made(QualityOfService quality, std::chrono::milliseconds delay, Task task)
    {
        auto work = std::make_shared<Work>();
        work->quality = quality;
        work->delay = delay;
        work->task = std::move(task);
        return work;
    }
};

/// One player, which answers as soon as the main queue runs.
struct OnePlayer final : VolumePlayers {
    static constexpr PlayerRun run = 7;

    HeldMainQueue& queue;
    std::optional<VolumeLook> answer = VolumeLook{true, 0.8, "One", {}};
    int looks = 0;
    std::vector<double> told;

    explicit OnePlayer(HeldMainQueue& mainQueue) : queue(mainQueue) {}

    [[nodiscard]] PlayerRun meant(const std::string& player) override
    {
        return player == musicSource ? run : 0;
    }
    void read(PlayerRun asked, const Answer& take) override { reply(asked, take); }
    void look(PlayerRun asked, const Answer& take) override
    {
        ++looks;
        reply(asked, take);
    }
    void tell(PlayerRun asked, double volume) override
    {
        if (asked == run) told.push_back(volume);
    }

private:
    void reply(PlayerRun asked, const Answer& take)
    {
        queue.post([this, asked, take] { take(asked == run ? answer : std::nullopt); });
    }
};

struct OtherScripts final : ScriptRunner {
    std::vector<std::string> sources;

    [[nodiscard]] ScriptResult run(const std::string& source) override
    {
        sources.push_back(source);
        return ScriptResult::ofText("as it is");
    }
};

/// What the core does on one of its workers, while the main thread goes on.
inline void onWorker(HeldMainQueue& queue, const std::function<void()>& work)
{
    auto done = std::async(std::launch::async, work);
    while (done.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready) queue.run();
    queue.run();
}

}  // namespace sonvara::test
