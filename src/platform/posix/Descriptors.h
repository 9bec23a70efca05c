// Open file descriptors: who closes them, and pipes that do not leak into children.
#pragma once

#include <unistd.h>
#include <utility>

namespace sonvara {

/// Closes its descriptor when it is dropped; -1 stands for none.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int number) : number_(number) {}
    FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        std::swap(number_, other.number_);
        return *this;
    }
    ~FileDescriptor() { reset(); }

    [[nodiscard]] int get() const { return number_; }

    void reset()
    {
        if (number_ >= 0) ::close(number_);
        number_ = -1;
    }

private:
    int number_ = -1;
};

struct PipeEnds {
    FileDescriptor reading;
    FileDescriptor writing;
};

/// Makes a pipe whose ends close on exec. Returns 0 or an error number. Any thread.
int makePipe(PipeEnds& ends);

}  // namespace sonvara
