// The voice with a speech daemon of the test's own.
#pragma once

#include "SpeechFixture.h"
#include "StubSpeechServer.h"

#include "helpers/TemporaryFolder.h"

#include <cstddef>
#include <filesystem>
#include <iterator>
#include <thread>

namespace sonvara::test {

class StubFixture : public SpeechFixture {
protected:
    using Endings = StubSpeechServer::Endings;

    /// Waits for the threads of connections that hung, too: when the daemon leaves, the library now and then closes a
    /// descriptor twice, which may be another test's by then.
    ~StubFixture() override
    {
        voice.reset();
        server.die();
        EXPECT_TRUE(eventually([this] { return threads() <= threadsBefore; }));
    }

    /// Times that a test can wait for; calls of the library get no limit that a slow machine exceeds.
    static SpeechTimes shortTimes()
    {
        SpeechTimes times;
        times.speaking = {std::chrono::milliseconds(100), {}, {}};
        return times;
    }

    static std::ptrdiff_t threads()
    {
        return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
    }

    /// A sanitizer starts a thread of its own with the first one of the program, and keeps it.
    const std::ptrdiff_t threadsBefore = (std::thread([] {}).join(), threads());
    TemporaryFolder folder;
    StubSpeechServer server{folder.file("speechd.sock")};
};

}  // namespace sonvara::test
