// Descriptors that close themselves, pipes, and system calls that signals interrupt.
#include "platform/posix/Descriptors.h"

#include "platform/posix/Uninterrupted.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>
#include <utility>

namespace sonvara::test {

namespace {

bool isOpen(int number)
{
    return ::fcntl(number, F_GETFD) != -1;
}

TEST(FileDescriptorTest, ClosesEachNumberAlsoZero)
{
    const FileDescriptor saved(::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 10));
    ASSERT_TRUE(isOpen(saved.get()));
    {
        const FileDescriptor zero(STDIN_FILENO);
    }
    const bool wasOpen = isOpen(STDIN_FILENO);
    ::dup2(saved.get(), STDIN_FILENO);
    EXPECT_FALSE(wasOpen);
}

TEST(FileDescriptorTest, HasOneOwner)
{
    EXPECT_EQ(FileDescriptor().get(), -1);
    FileDescriptor first(::dup(STDERR_FILENO));
    const int number = first.get();
    FileDescriptor second(std::move(first));
    EXPECT_EQ(first.get(), -1);  // NOLINT(bugprone-use-after-move): what it is then is promised
    EXPECT_EQ(second.get(), number);
    first.reset();
    EXPECT_TRUE(isOpen(number));

    FileDescriptor third;
    third = std::move(second);
    EXPECT_EQ(third.get(), number);
    third.reset();
    EXPECT_EQ(third.get(), -1);
    EXPECT_FALSE(isOpen(number));
}

TEST(PipeTest, WhatIsWrittenAtOneEndIsReadAtTheOther)
{
    PipeEnds ends;
    ASSERT_EQ(makePipe(ends), 0);
    ASSERT_EQ(::write(ends.writing.get(), "x", 1), 1);
    ends.writing.reset();
    char read = 0;
    EXPECT_EQ(::read(ends.reading.get(), &read, 1), 1);
    EXPECT_EQ(read, 'x');
    EXPECT_EQ(::read(ends.reading.get(), &read, 1), 0) << "the other end is closed";
}

TEST(PipeTest, WithoutFreeNumbersThereIsTheReason)
{
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit none{0, before.rlim_max};
    PipeEnds ends;
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
    const int error = makePipe(ends);
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
    EXPECT_EQ(error, EMFILE);
    EXPECT_EQ(ends.reading.get(), -1);
    EXPECT_EQ(ends.writing.get(), -1);
}

TEST(UninterruptedTest, RepeatsWhatASignalHasInterruptedAndNothingElse)
{
    int calls = 0;
    EXPECT_EQ(uninterrupted([&] {
                  errno = EINTR;
                  return ++calls < 3 ? -1 : 5;
              }),
              5);
    EXPECT_EQ(calls, 3);
    calls = 0;
    EXPECT_EQ(uninterrupted([&] {
                  errno = EBADF;
                  return ++calls < 3 ? -1 : 5;
              }),
              -1);
    EXPECT_EQ(calls, 1);
}

}  // namespace

}  // namespace sonvara::test
