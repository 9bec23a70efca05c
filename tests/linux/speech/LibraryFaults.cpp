// What the sanitizers find in libspeechd 0.11.4 itself. They ask for these by name.

#include <dlfcn.h>
#include <libspeechd.h>
#include <pthread.h>

extern "C" {

const char* __tsan_default_suppressions();
const char* __tsan_default_options();
void __lsan_disable() __attribute__((weak));  // there in a build with that sanitizer only
void __lsan_enable() __attribute__((weak));

// Closing a connection destroys the mutexes of its reading thread before it has waited for that thread; glibc
// answers a lock of a destroyed mutex with an error, and the thread ends all the same. The reading thread
// closes the socket of a dead daemon without telling the writing one. All connections print the priority of a
// line into one buffer; ours is always the same.
const char* __tsan_default_suppressions()
{
    return "mutex:libspeechd.so\n"
           "race:spd_close\n"
           "race:spd_send_data_wo_mutex\n"
           "race:sprintf_chk\n";
}

// To start a daemon it forks, though other threads run; the child only becomes another program.
const char* __tsan_default_options()
{
    return "die_after_fork=0";
}

// The library's own text about a daemon that could not be started is never freed. Its function is called
// through this one, as to suppress the leak by the function's name would take a symbolizer, which not every
// machine has.
SPDConnection* spd_open2(const char* client, const char* connection, const char* user, SPDConnectionMode mode,
                         const SPDConnectionAddress* address, int startDaemon, char** error)
{
    static const auto library = reinterpret_cast<decltype(&spd_open2)>(::dlsym(RTLD_NEXT, "spd_open2"));
    if (__lsan_disable) __lsan_disable();
    auto* const opened = library(client, connection, user, mode, address, startDaemon, error);
    if (__lsan_enable) __lsan_enable();
    return opened;
}

#ifdef __SANITIZE_THREAD__
// The thread sanitizer of GCC 12 fails an assertion of its own now and then when a thread is cancelled. The
// reading thread ends without that as well, because its socket was shut down before.
int pthread_cancel(pthread_t /*thread*/)
{
    return 0;
}
#endif

}  // extern "C"
