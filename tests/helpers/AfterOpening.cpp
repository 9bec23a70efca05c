#include "helpers/AfterOpening.h"

#include <cstdarg>
#include <dlfcn.h>
#include <fcntl.h>
#include <utility>

namespace sonvara::test {

namespace {

thread_local std::string awaitedPath;
thread_local std::function<void()> awaitedAction;

void tellOfOpening(const char* path)
{
    if (awaitedAction && awaitedPath == path) std::exchange(awaitedAction, nullptr)();
}

}  // namespace

void afterOpening(std::string path, std::function<void()> action)
{
    awaitedPath = std::move(path);
    awaitedAction = std::move(action);
}

bool isOpeningAwaited()
{
    return static_cast<bool>(awaitedAction);
}

}  // namespace sonvara::test

// Stands before the C library's function of this name, for Qt too.
extern "C" int open64(const char* path, int flags, ...)
{
    using Open = int (*)(const char*, int, ...);
    static const auto open = reinterpret_cast<Open>(::dlsym(RTLD_NEXT, "open64"));
    std::va_list arguments;
    va_start(arguments, flags);
    const auto mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : mode_t{};
    va_end(arguments);
    const int descriptor = open(path, flags, mode);
    sonvara::test::tellOfOpening(path);
    return descriptor;
}
