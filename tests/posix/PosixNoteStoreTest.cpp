// The notes' file.
#include "platform/posix/PosixNoteStore.h"

#include "helpers/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/resource.h>

namespace sonvara::test {
namespace {

class PosixNoteStoreTest : public testing::Test {
protected:
    TemporaryFolder folder;
    std::string path = folder.path() + "/deep/er/notes";
    PosixNoteStore store{path};
};

TEST_F(PosixNoteStoreTest, WithoutAFileThereIsNothing)
{
    EXPECT_EQ(store.load(), std::nullopt);
    store.remove();
    store.setAside();
}

TEST_F(PosixNoteStoreTest, WhatIsSavedIsLoadedByTheNextProcess)
{
    store.save("one");
    store.save("two");
    EXPECT_EQ(PosixNoteStore(path).load(), "two");
    EXPECT_FALSE(std::filesystem::exists(path + ".new"));
}

TEST_F(PosixNoteStoreTest, TheFileIsForTheUserAlone)
{
    store.save("one");
    EXPECT_EQ(std::filesystem::status(path).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST_F(PosixNoteStoreTest, RemovedIsGone)
{
    store.save("one");
    store.remove();
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(PosixNoteStoreTest, SetAsideIsKeptUnderAnotherName)
{
    store.save("one");
    store.setAside();
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_EQ(PosixNoteStore(path + ".damaged").load(), "one");
}

TEST_F(PosixNoteStoreTest, AFolderThatCannotBeMadeIsSilent)
{
    PosixNoteStore impossible("/dev/null/notes");
    impossible.save("one");
    EXPECT_EQ(impossible.load(), std::nullopt);
}

TEST_F(PosixNoteStoreTest, WhatCannotTakeTheFilesPlaceIsRemoved)
{
    std::filesystem::create_directories(path + "/in the way");
    store.save("one");
    EXPECT_FALSE(std::filesystem::exists(path + ".new"));
}

TEST_F(PosixNoteStoreTest, WhatAnEndBeforeOursLeftBesideItIsReplaced)
{
    store.save("one");
    std::ofstream(path + ".new") << "half of something that was longer";
    store.save("two");
    EXPECT_EQ(store.load(), "two");
}

TEST_F(PosixNoteStoreTest, ATextOfOneLetterIsSaved)
{
    store.save("x");
    EXPECT_EQ(store.load(), "x");
}

TEST_F(PosixNoteStoreTest, OnAFullDiskTheTextBeforeStays)
{
    store.save("one");
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit few{4, before.rlim_max};
    const auto signalBefore = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &few), 0);
    store.save("a longer one");
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, signalBefore);
    EXPECT_EQ(store.load(), "one");
    EXPECT_FALSE(std::filesystem::exists(path + ".new"));
}

TEST_F(PosixNoteStoreTest, AHugeFileIsReadInPartOnly)
{
    store.save(std::string(1 << 20, 'x'));
    EXPECT_EQ(store.load()->size(), (64U << 10) + 1);
}

}  // namespace
}  // namespace sonvara::test
