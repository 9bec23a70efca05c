// The activity log.
#include "fakes/FakeDesktop.h"

#include <gmock/gmock.h>

#include <array>
#include <atomic>
#include <barrier>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class DJLogTest : public testing::Test {
protected:
    FakeDesktop desktop;
    DJLog* log = &DJLog::shared();

    [[nodiscard]] std::vector<std::string> messages() const
    {
        std::vector<std::string> found;
        for (const auto& entry : log->entries.get()) found.push_back(entry->message);
        return found;
    }
};

TEST_F(DJLogTest, TheSharedLogIsTheOneInstance)
{
    EXPECT_EQ(&DJLog::shared(), log);
}

TEST(DJLogSharedTest, IsMadeByItsFirstUseOnWhateverThread)
{
    FakeDesktop desktop;
    constexpr int users = 8;
    std::barrier begin(users);
    std::array<DJLog*, users> found{};
    std::vector<std::thread> threads;
    for (auto& log : found) {
        threads.emplace_back([&begin, &log] {
            begin.arrive_and_wait();
            log = &DJLog::shared();
        });
    }
    for (auto& each : threads) each.join();
    EXPECT_THAT(found, testing::Each(&DJLog::shared()));
}

TEST(DJLogSharedDeathTest, HasNothingToRunOnBeforeThatIsSaid)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");  // a process in which nobody has said it
    EXPECT_DEATH((void)DJLog::shared(), "");
}

TEST(DJLogSharedTest, RunsOnWhatWasSaidLastBeforeItsFirstUse)
{
    const FakeDesktop other;
    FakeDesktop desktop;
    DJLog::shared().log("first", DJLog::Level::info);
    desktop.time.run();
    EXPECT_EQ(DJLog::shared().entries.get().size(), 1U);
}

TEST_F(DJLogTest, PlainTextIsReadOnAnyThreadWhileTheLogChanges)
{
    std::atomic<int> reads = 0;
    std::atomic<bool> isOver = false;
    std::thread reader([&] {
        while (!isOver) {
            const auto text = log->plainText();
            EXPECT_TRUE(text.empty() || text.starts_with("[14:03:27] INFO: entry")) << text;
            EXPECT_FALSE(text.ends_with('\n')) << text;
            ++reads;
        }
    });
    for (int i = 0; i < 500; ++i) {
        log->log("entry", DJLog::Level::info);
        if (i % 100 == 99) log->clear();
        desktop.time.run();
        for (const int before = reads; i % 50 == 0 && reads == before;) std::this_thread::yield();
    }
    isOver = true;
    reader.join();
}

TEST_F(DJLogTest, PlainTextIsOfTheEntriesThatTheLogHolds)
{
    std::vector<std::string> during;
    const auto handle = log->entries.subscribe([&](const auto&) { during.push_back(log->plainText()); });
    log->log("one", DJLog::Level::info);
    desktop.time.run();
    EXPECT_THAT(during, ElementsAre("", "")) << "a change is told before the log holds it";
    EXPECT_EQ(log->plainText(), "[14:03:27] INFO: one");
    log->clear();
    desktop.time.run();
    EXPECT_EQ(log->plainText(), "");
}

TEST_F(DJLogTest, EntriesAreAppendedInALaterTurn)
{
    log->log("first", DJLog::Level::info);
    EXPECT_THAT(messages(), IsEmpty());
    log->log("second", DJLog::Level::error);
    desktop.time.run();
    EXPECT_THAT(messages(), ElementsAre("first", "second"));
    EXPECT_EQ(log->entries.get()[1]->level, DJLog::Level::error);
    EXPECT_NE(log->entries.get()[0]->id, log->entries.get()[1]->id);
}

TEST_F(DJLogTest, TheTwoHundredAndFirstEntryPushesTheOldestOut)
{
    for (int i = 1; i <= 201; ++i) log->log(std::to_string(i), DJLog::Level::info);
    desktop.time.run();
    EXPECT_EQ(log->entries.get().size(), 200U);
    EXPECT_EQ(log->entries.get().front()->message, "2");
    EXPECT_EQ(log->entries.get().back()->message, "201");
}

TEST_F(DJLogTest, UpToTwoHundredEntriesEachIsOnePublishedChange)
{
    std::vector<std::size_t> sizes;
    const auto handle = log->entries.subscribe([&](const auto& entries) { sizes.push_back(entries.size()); });
    for (int i = 0; i < 200; ++i) log->log("entry", DJLog::Level::info);
    desktop.time.run();
    ASSERT_EQ(sizes.size(), 201U);
    for (std::size_t i = 0; i < sizes.size(); ++i) EXPECT_EQ(sizes[i], i);
}

TEST_F(DJLogTest, AppendingAndCuttingAreTwoPublishedChangesOfOneTurn)
{
    for (int i = 0; i < 200; ++i) log->log("old", DJLog::Level::info);
    desktop.time.run();
    std::vector<std::size_t> sizes;
    const auto handle = log->entries.subscribe([&](const auto& entries) { sizes.push_back(entries.size()); });
    log->log("new", DJLog::Level::info);
    desktop.time.run();
    EXPECT_THAT(sizes, ElementsAre(200U, 201U, 200U));
}

TEST_F(DJLogTest, RecordSpokenSetsTheLastChatBeforeItAddsTheEntry)
{
    std::vector<std::size_t> entriesAtChat;
    const auto handle = log->lastChat.subscribe(
        [&](const std::string&) { entriesAtChat.push_back(log->entries.get().size()); });
    log->recordSpoken("Up next.");
    EXPECT_EQ(log->lastChat.get(), "") << "not yet";
    desktop.time.run();
    EXPECT_EQ(log->lastChat.get(), "Up next.");
    EXPECT_THAT(messages(), ElementsAre("Spoke: Up next."));
    EXPECT_EQ(log->entries.get()[0]->level, DJLog::Level::info);
    EXPECT_THAT(entriesAtChat, ElementsAre(0U, 0U));
}

TEST_F(DJLogTest, RecordSpokenOfAnEmptyTextIsRecordedAsSuch)
{
    log->recordSpoken("something");
    log->recordSpoken("");
    desktop.time.run();
    EXPECT_EQ(log->lastChat.get(), "");
    EXPECT_EQ(messages().back(), "Spoke: ");
}

TEST_F(DJLogTest, ClearEmptiesTheEntriesAndKeepsTheLastChat)
{
    log->recordSpoken("Up next.");
    desktop.time.run();
    log->clear();
    EXPECT_FALSE(log->entries.get().empty()) << "not yet";
    desktop.time.run();
    EXPECT_THAT(messages(), IsEmpty());
    EXPECT_EQ(log->lastChat.get(), "Up next.");
}

TEST_F(DJLogTest, PlainTextOfAnEmptyLogIsEmpty)
{
    EXPECT_EQ(log->plainText(), "");
}

TEST_F(DJLogTest, PlainTextHasALineForEachEntryAndNoLineFeedAtTheEnd)
{
    log->recordSpoken("Up next");
    desktop.time.run();
    EXPECT_EQ(log->plainText(), "[14:03:27] INFO: Spoke: Up next");
    desktop.time.advance(33s);
    log->log("claude intro: Hi", DJLog::Level::success);
    desktop.time.run();
    EXPECT_EQ(log->plainText(), "[14:03:27] INFO: Spoke: Up next\n[14:04:00] SUCCESS: claude intro: Hi");
}

TEST_F(DJLogTest, TimesHaveTwoDigitsOnATwentyFourHourClock)
{
    desktop.time.setWallClockOffset(-(4h + 58min + 20s));
    log->log("early", DJLog::Level::error);
    desktop.time.setWallClockOffset(7h + 1min + 38s);
    log->log("late", DJLog::Level::error);
    desktop.time.run();
    EXPECT_EQ(log->plainText(), "[09:05:07] ERROR: early\n[21:05:05] ERROR: late");
}

TEST_F(DJLogTest, LineFeedsInAMessageAreCopied)
{
    log->log("one\ntwo", DJLog::Level::info);
    desktop.time.run();
    EXPECT_EQ(log->plainText(), "[14:03:27] INFO: one\ntwo");
}

TEST_F(DJLogTest, AnEntryCarriesTheTimeOfTheCallNotOfTheAppend)
{
    desktop.time.post(QualityOfService::standard, [&] {
        log->log("from a worker", DJLog::Level::info);
        // The main thread has its turn only later: time passes between the call and the append.
        desktop.time.setWallClockOffset(1h);
    });
    desktop.time.run();
    EXPECT_EQ(log->plainText(), "[14:03:27] INFO: from a worker");
}

TEST(DJLogLevelTest, RawValuesAreExactlyTheThree)
{
    EXPECT_EQ(DJLog::levelFromRawValue("info"), DJLog::Level::info);
    EXPECT_EQ(DJLog::levelFromRawValue("success"), DJLog::Level::success);
    EXPECT_EQ(DJLog::levelFromRawValue("error"), DJLog::Level::error);
    for (const auto* value : {"info", "success", "error"})
        EXPECT_EQ(DJLog::rawValue(*DJLog::levelFromRawValue(value)), value);
    for (const auto* other : {"", "Info", "ERROR", "warning", "info "}) {
        EXPECT_EQ(DJLog::levelFromRawValue(other), std::nullopt) << other;
    }
}

}  // namespace
}  // namespace sonvara::test
