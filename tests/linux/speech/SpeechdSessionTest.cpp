// A session by itself: its thread, its end, and since when it owes an answer.
#include "StubSpeechServer.h"

#include "helpers/EventLoop.h"
#include "helpers/TemporaryFolder.h"
#include "platform/linux/speech/SpeechdSession.h"

#include <gtest/gtest.h>

#include <memory>
#include <mutex>
#include <vector>

namespace sonvara::test {

namespace {

using Kind = SessionEvent::Kind;

/// What a session has told.
class Told {
public:
    void add(const SessionEvent& event)
    {
        const std::lock_guard lock(mutex_);
        kinds_.push_back(event.kind);
    }
    [[nodiscard]] std::vector<Kind> kinds() const
    {
        const std::lock_guard lock(mutex_);
        return kinds_;
    }

private:
    mutable std::mutex mutex_;
    std::vector<Kind> kinds_;
};

class SpeechdSessionTest : public ::testing::Test {
protected:
    void start()
    {
        const auto token = std::make_shared<int>();
        thread_ = token;
        session = std::make_unique<SpeechdSession>(
            SpeechdManner(), [token, this](const SessionEvent& event) { told.add(event); });
    }
    /// Starts, and waits until nothing is under way.
    void startAndRest()
    {
        start();
        ASSERT_TRUE(rests());
    }
    [[nodiscard]] bool rests() const
    {
        return eventually([this] { return !session->waitingSince(); });
    }
    /// Whether the session's thread, which holds its listener, comes to its end.
    [[nodiscard]] bool threadEnds() const
    {
        return eventually([this] { return thread_.expired(); });
    }

    TemporaryFolder folder;
    StubSpeechServer server{folder.file("speechd.sock")};
    Told told;
    std::unique_ptr<SpeechdSession> session;

private:
    std::weak_ptr<int> thread_;
};

TEST_F(SpeechdSessionTest, tellsALinesWay)
{
    startAndRest();
    session->say(1, "one");
    ASSERT_TRUE(server.waitForLines(1));
    server.tell("702 END");
    ASSERT_TRUE(eventually([&] { return told.kinds().size() == 4; }));
    EXPECT_EQ(told.kinds(), (std::vector{Kind::opened, Kind::accepted, Kind::begun, Kind::ended}));
}

TEST_F(SpeechdSessionTest, owesNothingWhileALineSpeaks)
{
    startAndRest();
    session->say(1, "one");
    ASSERT_TRUE(server.waitForLines(1));
    EXPECT_TRUE(rests());
}

TEST_F(SpeechdSessionTest, owesAnAnswerToALineAtOnce)
{
    startAndRest();
    server.hangAt("SPEAK");
    session->say(1, "one");
    EXPECT_TRUE(session->waitingSince().has_value());
}

TEST_F(SpeechdSessionTest, owesAnAnswerToACancelAtOnce)
{
    startAndRest();
    server.hangAt("CANCEL SELF");
    session->cancel();
    EXPECT_TRUE(session->waitingSince().has_value());
}

TEST_F(SpeechdSessionTest, eachCallHasATimeOfItsOwn)
{
    startAndRest();
    server.hangAt("CANCEL SELF");
    session->cancel();
    const auto cancelled = session->waitingSince();
    ASSERT_TRUE(server.waitForCommand("CANCEL SELF"));
    ASSERT_TRUE(cancelled.has_value());
    const auto begun = session->waitingSince();
    session->say(1, "one");
    session->cancel();
    session->say(2, "two");
    EXPECT_EQ(session->waitingSince(), begun) << "still that of the call which hangs";
    EXPECT_TRUE(session->holdsUnsentLine());
    server.hangAt("SPEAK");
    server.resume();
    EXPECT_TRUE(eventually([&] { return session->waitingSince() > begun; }));
}

TEST_F(SpeechdSessionTest, itsThreadEndsWhenItIsLeft)
{
    startAndRest();
    session.reset();
    EXPECT_TRUE(threadEnds());
}

TEST_F(SpeechdSessionTest, itsThreadEndsWhenItIsLeftInACallThatHangs)
{
    startAndRest();
    server.hangAt("SPEAK");
    session->say(1, "one");
    ASSERT_TRUE(server.waitForCommand("SPEAK"));
    session.reset();
    EXPECT_TRUE(threadEnds());
}

TEST_F(SpeechdSessionTest, tellsNothingOfAConnectionThatOpensAfterItsEnd)
{
    server.hangAt("SET SELF CLIENT_NAME");
    start();
    ASSERT_TRUE(server.waitForCommand("SET SELF CLIENT_NAME"));
    session.reset();
    server.hangAt("SET SELF NOTIFICATION");
    server.resume();
    EXPECT_TRUE(threadEnds()) << "it is hung up on at once, and waits for nothing more";
    EXPECT_EQ(told.kinds(), std::vector<Kind>());
}

TEST_F(SpeechdSessionTest, closesWhenAllIsDone)
{
    startAndRest();
    session->close();
    session->waitUntilClosed(std::chrono::steady_clock::now() + std::chrono::minutes(1));
    EXPECT_TRUE(server.waitForConnections(0));
    session.reset();
    EXPECT_TRUE(threadEnds());
}

}  // namespace

}  // namespace sonvara::test
