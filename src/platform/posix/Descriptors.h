// What the systems do differently to keep descriptors from leaking into children.
#pragma once

#include "platform/posix/FileDescriptor.h"

#include <spawn.h>

namespace sonvara {

struct PipeEnds {
    FileDescriptor reading;
    FileDescriptor writing;
};

/// Makes a pipe whose ends close on exec. Returns 0 or an error number. Any thread.
int makePipe(PipeEnds& ends);

/// Adds to `actions` and `flags`, both of a spawn whose standard output and error are already
/// arranged, what closes every descriptor but the three standard ones in the child.
/// Returns 0 or an error number.
int closeOtherDescriptors(posix_spawn_file_actions_t& actions, int& flags);

}  // namespace sonvara
