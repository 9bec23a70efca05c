#include "platform/posix/Descriptors.h"

#include <array>
#include <cerrno>
#include <fcntl.h>

namespace sonvara {

int makePipe(PipeEnds& ends)
{
    std::array<int, 2> numbers{};
    if (::pipe2(numbers.data(), O_CLOEXEC) != 0) return errno;
    ends = {FileDescriptor(numbers[0]), FileDescriptor(numbers[1])};
    return 0;
}

}  // namespace sonvara
