// System calls that signals may interrupt.
#pragma once

#include <cerrno>

namespace sonvara {

/// Repeats a system call that a signal interrupted.
template <typename Call>
auto uninterrupted(Call call)
{
    auto result = call();
    while (result == -1 && errno == EINTR) result = call();
    return result;
}

}  // namespace sonvara
