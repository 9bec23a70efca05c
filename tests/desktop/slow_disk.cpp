// Loaded into a program with LD_PRELOAD: its disk takes SLOW_DISK_SECONDS for whatever must reach it.
#include <chrono>
#include <cstdlib>
#include <dlfcn.h>
#include <thread>

namespace {

template <typename Function>
Function* slowed(const char* name)
{
    const auto* seconds = std::getenv("SLOW_DISK_SECONDS");
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds == nullptr ? 0 : std::atof(seconds)));
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {

int fsync(int file)
{
    return slowed<int(int)>("fsync")(file);
}

int fdatasync(int file)
{
    return slowed<int(int)>("fdatasync")(file);
}

int rename(const char* from, const char* to) noexcept
{
    return slowed<int(const char*, const char*)>("rename")(from, to);
}

int renameat(int fromFolder, const char* from, int toFolder, const char* to) noexcept
{
    return slowed<int(int, const char*, int, const char*)>("renameat")(fromFolder, from, toFolder, to);
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) noexcept
{
    return slowed<int(int, const char*, int, const char*, unsigned)>("renameat2")(fromFolder, from, toFolder,
                                                                                  to, flags);
}

int unlink(const char* path) noexcept
{
    return slowed<int(const char*)>("unlink")(path);
}

}  // extern "C"
