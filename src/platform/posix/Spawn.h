// Starting a program without a shell.
#pragma once

#include "ports/ChildProcess.h"

#include <sys/types.h>

namespace sonvara {

/// Starts the program of `setup` in a session of its own, with `output` as its standard output, no
/// standard error, the standard input of this process, no other descriptor, default signal
/// dispositions and no blocked signal. A working folder that is a link is refused. On Linux the
/// program is asked to end when the calling thread ends, and so when this process is killed.
/// Returns 0 and sets `pid`, or returns an error number, also for a program that cannot be executed.
/// Any thread that waits for the program's end.
int spawnProgram(const ChildProcessSetup& setup, int output, pid_t& pid);

}  // namespace sonvara
