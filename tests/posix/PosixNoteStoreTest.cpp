// The notes' file.
#include "platform/posix/PosixNoteStore.h"

#include "helpers/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

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

TEST_F(PosixNoteStoreTest, AHugeFileIsReadInPartOnly)
{
    store.save(std::string(1 << 20, 'x'));
    EXPECT_EQ(store.load()->size(), (64U << 10) + 1);
}

}  // namespace
}  // namespace sonvara::test
