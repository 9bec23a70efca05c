// Where on Linux a tool may work: in a folder of the user's own, below none that others can write to.
#include "platform/posix/PosixSystem.h"

#include "helpers/ScopedVariable.h"
#include "helpers/TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace sonvara::test {

namespace {

namespace fs = std::filesystem;

constexpr auto writableByOthers = fs::perms::group_write | fs::perms::others_write;

class TemporaryDirectoryTest : public testing::Test {
protected:
    void SetUp() override
    {
        const char* const home = std::getenv("HOME");
        if (home == nullptr || !isOurs(home)) GTEST_SKIP() << "others can write to a folder above $HOME here";
        folder_.emplace(home);
        cache_.emplace("XDG_CACHE_HOME", folder_->file("cache").c_str());
        runtime_.emplace("XDG_RUNTIME_DIR", made("run", 0700).c_str());
    }

    static bool isOurs(const fs::path& path)
    {
        for (auto folder = fs::canonical(path);; folder = folder.parent_path()) {
            struct stat status{};
            if (::stat(folder.c_str(), &status) != 0) return false;
            if (status.st_uid != 0 && status.st_uid != ::geteuid()) return false;
            if ((fs::status(folder).permissions() & writableByOthers) != fs::perms::none) return false;
            if (folder == folder.root_path()) return true;
        }
    }

    [[nodiscard]] std::string made(const std::string& name, unsigned mode) const
    {
        const auto path = folder_->file(name);
        fs::create_directories(path);
        fs::permissions(path, static_cast<fs::perms>(mode));
        return fs::canonical(path);
    }

    static unsigned modeOf(const std::string& path)
    {
        return static_cast<unsigned>(fs::status(path).permissions());
    }

    [[nodiscard]] std::string given() const { return files_.temporaryDirectory(); }
    [[nodiscard]] std::string ourCache() const
    {
        return fs::canonical(folder_->path()).string() + "/cache/sonvara";
    }

    std::optional<TemporaryFolder> folder_;
    std::optional<ScopedVariable> cache_;
    std::optional<ScopedVariable> runtime_;
    ScopedVariable temporary_{"TMPDIR", "/tmp"};  // which is everybody's
    PosixFileManager files_;
};

TEST_F(TemporaryDirectoryTest, IsTheUsersRuntimeFolder)
{
    EXPECT_EQ(given(), fs::canonical(folder_->file("run")));
    EXPECT_FALSE(fs::exists(folder_->file("cache")));
}

TEST_F(TemporaryDirectoryTest, WithoutThatItIsAFolderBelowTheCacheThatNobodyElseCanRead)
{
    for (const char* const unusable :
         {static_cast<const char*>(nullptr), "", "relative", "/nowhere/at/all"}) {
        runtime_->set(unusable);
        EXPECT_EQ(given(), ourCache());
        EXPECT_EQ(modeOf(ourCache()), 0700U);
    }
}

TEST_F(TemporaryDirectoryTest, AFolderOfTheCacheThatOthersCouldReadIsClosed)
{
    runtime_->set(nullptr);
    (void)made("cache/sonvara", 0755);
    EXPECT_EQ(given(), ourCache());
    EXPECT_EQ(modeOf(ourCache()), 0700U);
}

TEST_F(TemporaryDirectoryTest, TheCacheIsInTheHomeFolderUnlessItIsSaidWhere)
{
    const ScopedVariable home("HOME", folder_->path().c_str());
    runtime_->set(nullptr);
    cache_->set(nullptr);
    EXPECT_EQ(given(), fs::canonical(folder_->path()).string() + "/.cache/sonvara");
}

TEST_F(TemporaryDirectoryTest, NoFolderToWhichOthersCanWriteIsUsedNorOneBelowIt)
{
    for (const unsigned mode : {0770U, 0702U, 01777U}) {
        runtime_->set(made("run", mode).c_str());
        EXPECT_EQ(given(), ourCache());
        (void)made("open", mode);
        runtime_->set(made("open/run", 0700).c_str());
        EXPECT_EQ(given(), ourCache());
    }
}

TEST_F(TemporaryDirectoryTest, NoFolderThatOthersCanEnterIsUsed)
{
    for (const unsigned mode : {0755U, 0750U, 0701U}) {
        runtime_->set(made("run", mode).c_str());
        EXPECT_EQ(given(), ourCache());
    }
}

TEST_F(TemporaryDirectoryTest, ALinkIsFollowedOnlyToWhereItLeads)
{
    fs::create_directory_symlink(folder_->file("run"), folder_->file("link"));
    runtime_->set(folder_->file("link").c_str());
    EXPECT_EQ(given(), fs::canonical(folder_->file("run")));

    (void)made("open", 0777);
    (void)made("open/run", 0700);
    fs::create_directory_symlink(folder_->file("open/run"), folder_->file("astray"));
    runtime_->set(folder_->file("astray").c_str());
    EXPECT_EQ(given(), ourCache());
}

TEST_F(TemporaryDirectoryTest, WhereNoFolderIsTheUsersOwnNothingCanBeMadeAtAll)
{
    (void)made("open", 0777);
    runtime_->set(nullptr);
    cache_->set(made("open/cache", 0700).c_str());
    EXPECT_FALSE(files_.createDirectory(given() + "/Sonvara-AIDJ"));
}

using TemporaryDirectoryAsRootTest = TemporaryDirectoryTest;

TEST_F(TemporaryDirectoryAsRootTest, NoFolderOfAnotherUserIsUsed)
{
    if (::geteuid() != 0) GTEST_SKIP() << "only root can make a folder of another user";
    ASSERT_EQ(::chown(folder_->file("run").c_str(), 12345, 12345), 0);
    EXPECT_EQ(given(), ourCache());
}

}  // namespace

}  // namespace sonvara::test
