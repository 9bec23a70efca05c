// Running a command beside the program under test.
#pragma once

#include <cstdio>
#include <string>

namespace sonvara::test {

/// Any thread: runs a shell's command to its end; whether it succeeded. The shell prints the status, since
/// GNUstep may collect that of every child of the process before anybody else can.
[[nodiscard]] inline bool runCommand(const std::string& command)
{
    std::FILE* output = ::popen((command + " >&2; echo $?").c_str(), "r");
    if (output == nullptr) return false;
    std::string printed;
    for (int c = std::fgetc(output); c != EOF; c = std::fgetc(output)) printed += static_cast<char>(c);
    ::pclose(output);
    return printed == "0\n";
}

}  // namespace sonvara::test
