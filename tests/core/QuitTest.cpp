// The end of the process while workers are still busy, with real threads.
#include "app/SonvaraApp.h"
#include "fakes/FakeDesktop.h"
#include "log/DJLog.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <mutex>
#include <thread>
#include <vector>

namespace sonvara::test {
namespace {

/// Keeps what is posted, as a main thread does that has stopped to serve its queue.
struct DeafMainQueue final : MainQueue {
    std::mutex mutex;
    std::vector<Task> tasks;

    void post(Task task) override
    {
        const std::lock_guard lock(mutex);
        tasks.push_back(std::move(task));
    }
    std::shared_ptr<RepeatingTimer> scheduleTimer(std::chrono::milliseconds, Task) override
    {
        return nullptr;
    }
};

/// Runs the program's main function with an application object that ends the process itself, as some systems' do.
[[noreturn]] void exitWhileAWorkerWrites()
{
    static std::atomic<bool> isWriting = false;
    static auto& desktop = *new FakeDesktop;  // left behind, as what a busy worker uses must be
    desktop.environment.values["XCTestConfigurationFilePath"] =
        "";  // without the core: the log is what matters
    static auto& queue = *new DeafMainQueue;
    Platform platform{desktop.application,   queue,          desktop.time,     desktop.time,
                      desktop.environment,   desktop.files,  desktop.launcher, desktop.players,
                      desktop.notifications, desktop.voice,  desktop.defaults, desktop.systemLog,
                      desktop.statusBar,     desktop.images, desktop.windows,  desktop.pasteboard,
                      desktop.loginItem};
    desktop.application.whileRunning = [] {
        std::thread([] {
            for (;;) {
                DJLog::shared().log("a tool has answered", DJLog::Level::info);
                isWriting = true;
                std::this_thread::sleep_for(std::chrono::microseconds(10));
            }
        }).detach();
        while (!isWriting) std::this_thread::yield();
        // Runs after whatever destroys statics that were made since: the longer it takes, the more is written.
        std::exit(EXIT_SUCCESS);
    };
    std::atexit([] { std::this_thread::sleep_for(std::chrono::milliseconds(20)); });
    std::exit(SonvaraApp::main(platform));
}

TEST(QuitDeathTest, AWorkerThatWritesToTheLogOutlivesTheExit)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    for (int i = 0; i < 5; ++i)
        EXPECT_EXIT(exitWhileAWorkerWrites(), testing::ExitedWithCode(EXIT_SUCCESS), "");
}

}  // namespace
}  // namespace sonvara::test
