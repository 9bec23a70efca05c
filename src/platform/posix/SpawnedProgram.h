// How each system starts a program; `spawnProgram` has prepared what both need.
#pragma once

#include <sys/types.h>

namespace sonvara {

/// Everything that is allocated or opened for the start, so that a child has nothing to allocate.
struct SpawnedProgram {
    const char* path;
    char* const* arguments;    ///< the program's own name first, a null pointer last
    char* const* environment;  ///< a null pointer last
    int folder;                ///< descriptor of the working folder
    int output;                ///< descriptor that becomes the standard output
};

/// As `spawnProgram`.
int spawn(const SpawnedProgram& program, pid_t& pid);

}  // namespace sonvara
