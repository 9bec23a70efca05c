// A program for the tests that launches another one with the arguments that it was given, and waits for it on
// a thread that is not the main one.
#include "platform/posix/PosixChildProcess.h"

#include <string>
#include <thread>
#include <vector>

int main(int argc, char** argv)
{
    if (argc < 2) return 2;
    std::thread worker([program = argv[1], arguments = std::vector<std::string>(argv + 2, argv + argc)] {
        sonvara::PosixChildProcess child({program, arguments, "/", {}});
        if (child.launch()) return;
        (void)child.waitUntilExit();
    });
    worker.join();
    return 0;
}
