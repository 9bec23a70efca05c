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

// The linker puts the second one in the place of the program's main function, which is the first one then, and the last
// one in the place of the function by which the program ends its process.
extern "C" int __real_main();
extern "C" int __wrap_main(int argc, char** argv);
extern "C" [[noreturn]] void __wrap__exit(int status);

namespace sonvara::test {

namespace {

std::promise<void> launched;
std::promise<void> runs;
std::atomic<bool> expectsQuit = false;
std::function<void()> atExit;

// A test that has ended calls _Exit and does not come here.
[[noreturn]] void endOfProcess(bool isExpected)
{
    if (atExit) atExit();
    if (!isExpected) std::cerr << "The program has ended the process on its own." << std::endl;
    std::_Exit(isExpected && !testing::Test::HasFailure() ? EXIT_SUCCESS : EXIT_FAILURE);
}

// By this way out, destructors would run beside the workers.
void rejectExit()
{
    std::cerr << "The program leaves by exit." << std::endl;
    endOfProcess(false);
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
    std::atexit(rejectExit);
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

void AppTest::chooseQuit()
{
    (void)probe::chooseFromStatusMenu("Quit Sonvara");
}

void AppTest::quit(std::function<void()> check, const std::function<void()>& ask)
{
    atExit = std::move(check);
    EXPECT_EQ(standins::takeViolations(), std::vector<std::string>());
    expectsQuit = true;
    ask();
    std::promise<void>().get_future().wait_for(std::chrono::seconds(20));  // the process ends meanwhile
    std::cerr << "Quit did not end the program." << std::endl;
    std::_Exit(EXIT_FAILURE);
}

}  // namespace sonvara::test

void __wrap__exit(int status)
{
    sonvara::test::endOfProcess(sonvara::test::expectsQuit && status == EXIT_SUCCESS);
}

int __wrap_main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS();
    sonvara::test::AppTest::prepare();
    std::thread([] { std::_Exit(RUN_ALL_TESTS()); }).detach();
    return sonvara::test::AppTest::runProgram();
}
