// What the sanitizers find in libspeechd 0.11.4 itself. They ask for these by name.

#include <pthread.h>

extern "C" {

const char* __tsan_default_suppressions();
const char* __tsan_default_options();
const char* __lsan_default_suppressions();
const char* __asan_default_options();

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

// The library's own text about a daemon that could not be started is never freed.
const char* __lsan_default_suppressions()
{
    return "leak:spd_open2\n";
}

// The library has no frame pointers, and the leak is known by its frames.
const char* __asan_default_options()
{
    return "fast_unwind_on_malloc=0";
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
