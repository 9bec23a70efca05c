#include "AppTest.h"

#include "Classes.h"
#include "Command.h"
#include "Mouse.h"
#include "Probe.h"
#include "StripProbe.h"

#include <atomic>
#include <cstdlib>
#include <future>
#include <iostream>
#include <thread>

// The linker puts the second one in the place of the program's main function, which is the first one then.
extern "C" int __real_main();
extern "C" int __wrap_main(int argc, char** argv);

namespace sonvara::test {

namespace {

std::promise<void> launched;
std::promise<void> runs;
std::atomic<bool> expectsQuit = false;
std::function<void()> atExit;

// Called when the program ends the process. A test that has ended calls _Exit and does not come here.
void checkExit()
{
    if (atExit) atExit();
    if (!expectsQuit) std::cerr << "The program has ended the process on its own." << std::endl;
    std::_Exit(expectsQuit && !testing::Test::HasFailure() ? EXIT_SUCCESS : EXIT_FAILURE);
}

}  // namespace

void AppTest::prepare()
{
    initialiseClasses();
    postToMainThread([] { runs.set_value(); });
}

int AppTest::runProgram()
{
    launched.get_future().wait();
    std::atexit(checkExit);
    return __real_main();
}

void AppTest::start()
{
    launched.set_value();
    runs.get_future().wait();  // the event loop runs nothing before the launch has finished
}

void AppTest::launch()
{
    start();
    ASSERT_TRUE(eventually([this] { return players_.polls() >= 2 && probe::hasStatusItem(); }));
}

void AppTest::spotifyPosts(const std::string& state, const std::string& title, const std::string& artist,
                           const std::string& album)
{
    const std::string command = std::string(POST_NOTIFICATION) +
                                " com.spotify.client.PlaybackStateChanged 'Player State=" + state +
                                "' 'Name=" + title + "' 'Artist=" + artist + "' 'Album=" + album + "'";
    ASSERT_TRUE(runCommand(command));
}

std::vector<standins::SpokenLine> AppTest::lines(std::size_t count)
{
    EXPECT_TRUE(eventually([count] { return standins::spokenLines().size() >= count; }));
    return standins::spokenLines();
}

void AppTest::openSettings()
{
    ASSERT_TRUE(probe::chooseFromStatusMenu("Settings..."));
    ASSERT_TRUE(eventually([] { return probe::isShown("Sonvara Settings"); }));
}

void AppTest::quit(std::function<void()> check)
{
    atExit = std::move(check);
    EXPECT_EQ(standins::takeViolations(), std::vector<std::string>());
    expectsQuit = true;
    standins::allowScriptsOnMainThread();
    (void)probe::chooseFromStatusMenu("Quit Sonvara");
    std::promise<void>().get_future().wait_for(std::chrono::seconds(20));  // the process ends meanwhile
    std::cerr << "Quit did not end the program." << std::endl;
    std::_Exit(EXIT_FAILURE);
}

}  // namespace sonvara::test

int __wrap_main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS();
    sonvara::test::AppTest::prepare();
    std::thread([] { std::_Exit(RUN_ALL_TESTS()); }).detach();
    return sonvara::test::AppTest::runProgram();
}
