#include "platform/posix/Descriptors.h"

#include <array>
#include <cerrno>
#include <fcntl.h>

namespace sonvara {

// There is no call that makes a pipe which closes on exec from birth; the flag that closes everything
// else in our own children makes up for the moment between the two steps.
int makePipe(PipeEnds& ends)
{
    std::array<int, 2> numbers{};
    if (::pipe(numbers.data()) != 0) return errno;
    ends = {FileDescriptor(numbers[0]), FileDescriptor(numbers[1])};
    for (const int number : numbers)
        if (::fcntl(number, F_SETFD, FD_CLOEXEC) != 0) return errno;
    return 0;
}

}  // namespace sonvara
