// The thread that writes the notes.
#include "platform/posix/NoteWriter.h"

#include "volume/NoteStore.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;

/// A disk that hangs until it is released.
struct SlowStore final : NoteStore {
    std::optional<std::string> load() override { return {}; }
    void save(const std::string& text) override { write(text); }
    void remove() override { write("(removed)"); }
    void setAside() override {}
    void write(const std::string& text)
    {
        isBusy = true;
        while (!isReleased) std::this_thread::yield();
        const std::lock_guard lock(mutex);
        written.push_back(text);
    }

    std::atomic<bool> isBusy = false;
    std::atomic<bool> isReleased = false;
    std::mutex mutex;
    std::vector<std::string> written;
};

TEST(NoteWriterTest, NobodyWaitsForTheDiskAndOnlyTheLatestTextIsWritten)
{
    SlowStore store;
    NoteWriter writer(store);
    EXPECT_TRUE(writer.finish(0ms)) << "there is nothing to write";
    writer.write("one");
    while (!store.isBusy) std::this_thread::yield();
    for (const auto* text : {"two", "three", "four"}) writer.write(text);
    EXPECT_FALSE(writer.finish(10ms));
    store.isReleased = true;
    EXPECT_TRUE(writer.finish(10s));
    writer.write("");
    EXPECT_TRUE(writer.finish(10s));
    EXPECT_EQ(store.written, (std::vector<std::string>{"one", "four", "(removed)"}));
}

TEST(NoteWriterTest, IsFinishedAsSoonAsNothingIsLeftToWrite)
{
    SlowStore store;
    NoteWriter writer(store);
    writer.write("one");
    while (!store.isBusy) std::this_thread::yield();
    EXPECT_FALSE(writer.finish(0ms)) << "nothing waits, but one is under way";
    store.isReleased = true;
    const auto begun = std::chrono::steady_clock::now();
    EXPECT_TRUE(writer.finish(60s));
    EXPECT_LT(std::chrono::steady_clock::now() - begun, 30s) << "it was told of the end";
}

TEST(NoteWriterTest, WhatWasGivenLastIsWrittenBeforeItEnds)
{
    SlowStore store;
    store.isReleased = true;
    {
        NoteWriter writer(store);
        writer.write("one");
    }
    EXPECT_EQ(store.written, std::vector<std::string>{"one"});
}

}  // namespace
}  // namespace sonvara::test
