#include "helpers/DiskHooks.h"

#include <cstdarg>
#include <dlfcn.h>
#include <fcntl.h>
#include <mutex>
#include <utility>

namespace sonvara::test {

namespace {

std::mutex mutex;  // guards what follows; not held while an action runs
std::string awaitedPath;
std::function<void()> awaitedAction;
std::function<void()> flushing;

void tellOfOpening(const char* path)
{
    std::unique_lock lock(mutex);
    if (!awaitedAction || awaitedPath != path) return;
    const auto action = std::exchange(awaitedAction, nullptr);
    lock.unlock();
    action();
}

int flush(const char* function, int file)
{
    std::unique_lock lock(mutex);
    const auto action = flushing;
    lock.unlock();
    if (action) action();
    return reinterpret_cast<int (*)(int)>(::dlsym(RTLD_NEXT, function))(file);
}

}  // namespace

void afterOpening(std::string path, std::function<void()> action)
{
    const std::lock_guard lock(mutex);
    awaitedPath = std::move(path);
    awaitedAction = std::move(action);
}

bool isOpeningAwaited()
{
    const std::lock_guard lock(mutex);
    return static_cast<bool>(awaitedAction);
}

void beforeFlushing(std::function<void()> action)
{
    const std::lock_guard lock(mutex);
    flushing = std::move(action);
}

}  // namespace sonvara::test

// These stand before the C library's functions of their names, for Qt too.

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

extern "C" int fsync(int file)
{
    return sonvara::test::flush("fsync", file);
}

extern "C" int fdatasync(int file)
{
    return sonvara::test::flush("fdatasync", file);
}
