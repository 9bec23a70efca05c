// A value that one thread publishes and any thread reads: run with the sanitizers, it shows races and lost
// memory.
#include "support/AtomicSharedPtr.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace sonvara::test {
namespace {

TEST(AtomicSharedPtrTest, HoldsNothingAtFirst)
{
    const AtomicSharedPtr<int> shared;
    EXPECT_EQ(shared.load(), nullptr);
}

TEST(AtomicSharedPtrTest, HoldsWhatWasStoredLast)
{
    AtomicSharedPtr<std::string> shared;
    shared.store("one");
    shared.store("two");
    EXPECT_EQ(*shared.load(), "two");
}

TEST(AtomicSharedPtrTest, ARecordOutlivesItsReplacementWhereItIsHeld)
{
    AtomicSharedPtr<std::string> shared;
    shared.store("one");
    const auto held = shared.load();
    shared.store("two");
    EXPECT_EQ(*held, "one");
}

TEST(AtomicSharedPtrTest, LetsGoOfWhatItHasReplaced)
{
    AtomicSharedPtr<std::shared_ptr<int>> shared;
    std::weak_ptr<int> first;
    {
        auto value = std::make_shared<int>(1);
        first = value;
        shared.store(std::move(value));
    }
    EXPECT_FALSE(first.expired());
    EXPECT_EQ(*shared.load(), first.lock()) << "who has read it does not keep it";
    shared.store(nullptr);
    EXPECT_TRUE(first.expired());
}

TEST(AtomicSharedPtrTest, ReadersSeeWholeRecordsThatNeverGetOlder)
{
    constexpr int last = 20000;
    AtomicSharedPtr<std::vector<int>> shared;
    shared.store({0, 0});
    std::atomic<int> faults{0};
    auto readUntilTheLast = [&] {
        for (int seen = 0; seen < last;) {
            const auto record = shared.load();
            if (record->at(0) != record->at(1) || record->at(0) < seen) ++faults;
            seen = record->at(0);
        }
    };
    std::vector<std::thread> readers;
    for (int i = 0; i < 4; ++i) readers.emplace_back(readUntilTheLast);
    for (int i = 1; i <= last; ++i) shared.store({i, i});
    for (auto& reader : readers) reader.join();
    EXPECT_EQ(faults, 0);
}

}  // namespace
}  // namespace sonvara::test
