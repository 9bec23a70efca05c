// The whole program, core included, with a user in front of it and two players beside it.
#pragma once

#include "Director.h"
#include "ScriptedPlayers.h"
#include "StandInTest.h"

namespace sonvara::test {

/// Each test needs a process of its own. The test runs on a thread of its own, the program on the main
/// thread, once the test launches it.
class AppTest : public StandInTest {
public:
    /// To be called first, before there are threads.
    static void prepare();
    /// What the main thread does then: waits for the launch, then runs the program's `main`.
    static int runProgram();

protected:
    /// Runs the program until it has launched.
    static void start();
    /// The same, until it has polled both players once.
    void launch();

    /// Has another process post what Spotify posts.
    static void spotifyPosts(const std::string& state, const std::string& title, const std::string& artist,
                             const std::string& album);

    /// The lines spoken so far; waits for `count` of them.
    static std::vector<standins::SpokenLine> lines(std::size_t count);

    /// Chooses "Settings..." and waits for the window.
    static void openSettings();

    /// Asks the program to quit, unless told otherwise by choosing "Quit Sonvara", and waits for the end of the process,
    /// where `check` is called: does not return. Any other end of the process while a test runs is a failure.
    [[noreturn]] static void quit(std::function<void()> check = {},
                                  const std::function<void()>& ask = chooseQuit);
    static void chooseQuit();

    ScriptedPlayers players_;
};

}  // namespace sonvara::test
