// A value that one thread publishes and any thread reads: run with the sanitizers, it shows races and lost
// memory.
#include "support/Snapshot.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace sonvara::test {
namespace {

TEST(SnapshotTest, HoldsNothingAtFirst)
{
    const Snapshot<int> snapshot;
    EXPECT_EQ(snapshot.load(), nullptr);
}

TEST(SnapshotTest, HoldsWhatWasStoredLast)
{
    Snapshot<std::string> snapshot;
    snapshot.store("one");
    snapshot.store("two");
    EXPECT_EQ(*snapshot.load(), "two");
}

TEST(SnapshotTest, ARecordOutlivesItsReplacementWhereItIsHeld)
{
    Snapshot<std::string> snapshot;
    snapshot.store("one");
    const auto held = snapshot.load();
    snapshot.store("two");
    EXPECT_EQ(*held, "one");
}

TEST(SnapshotTest, LetsGoOfWhatItHasReplaced)
{
    Snapshot<std::shared_ptr<int>> snapshot;
    std::weak_ptr<int> first;
    {
        auto value = std::make_shared<int>(1);
        first = value;
        snapshot.store(std::move(value));
    }
    EXPECT_FALSE(first.expired());
    snapshot.store(nullptr);
    EXPECT_TRUE(first.expired());
}

TEST(SnapshotTest, ReadersSeeWholeRecordsThatNeverGetOlder)
{
    constexpr int last = 20000;
    Snapshot<std::vector<int>> snapshot;
    snapshot.store({0, 0});
    std::atomic<int> faults{0};
    auto readUntilTheLast = [&] {
        for (int seen = 0; seen < last;) {
            const auto record = snapshot.load();
            if (record->at(0) != record->at(1) || record->at(0) < seen) ++faults;
            seen = record->at(0);
        }
    };
    std::vector<std::thread> readers;
    for (int i = 0; i < 4; ++i) readers.emplace_back(readUntilTheLast);
    for (int i = 1; i <= last; ++i) snapshot.store({i, i});
    for (auto& reader : readers) reader.join();
    EXPECT_EQ(faults, 0);
}

}  // namespace
}  // namespace sonvara::test
