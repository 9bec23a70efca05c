// In which order one player's scripts are run.
#include "platform/macos/players/PlayerLane.h"

#include <gtest/gtest.h>

#include <utility>

namespace sonvara::test {
namespace {

class PlayerLaneTest : public testing::Test {
protected:
    /// The script that is under way ends.
    void end(const std::string& answer = "")
    {
        const auto done = std::exchange(done_, nullptr);
        ASSERT_TRUE(done) << "no script is under way";
        done(ScriptResult::ofText(answer));
    }
    PlayerLane::Done told(const std::string& name)
    {
        return [this, name](const ScriptResult& result) { answers_.push_back(name + "=" + *result.text); };
    }

    std::vector<std::string> begun_;
    std::vector<std::string> answers_;
    PlayerLane::Done done_;
    PlayerLane lane_{[this](const std::string& source, PlayerLane::Done done) {
        EXPECT_FALSE(done_) << "two scripts at once";
        begun_.push_back(source);
        done_ = std::move(done);
    }};
};

using Texts = std::vector<std::string>;

TEST_F(PlayerLaneTest, CommandsGoBeforePollsAndInTheirOrder)
{
    lane_.poll("poll", told("a"));
    lane_.poll("another poll", told("b"));
    lane_.command("read", told("c"));
    lane_.command("set", told("d"));
    for (int i = 0; i < 4; ++i) end(std::to_string(i));
    EXPECT_EQ(begun_, (Texts{"poll", "read", "set", "another poll"}));
    EXPECT_EQ(answers_, (Texts{"a=0", "c=1", "d=2", "b=3"}));
}

TEST_F(PlayerLaneTest, OfPollsOneWaitsAtMostAndItsAnswerIsShared)
{
    for (const char* name : {"a", "b", "c", "d"}) lane_.poll("poll", told(name));
    EXPECT_EQ(begun_.size(), 1U);
    end("old");
    end("new");
    EXPECT_EQ(begun_, (Texts{"poll", "poll"}));
    EXPECT_EQ(answers_, (Texts{"a=old", "b=new", "c=new", "d=new"}));
    EXPECT_FALSE(done_);
}

TEST_F(PlayerLaneTest, AnAnswerMayAskAgain)
{
    lane_.poll("poll", [this](const ScriptResult&) { lane_.command("set", told("a")); });
    end();
    end("done");
    EXPECT_EQ(answers_, Texts{"a=done"});
}

}  // namespace
}  // namespace sonvara::test
