// speech_server SOCKET: the tests' speech daemon as a program, for which every line is spoken at once. It prints each with
// the moment at which it had come, in seconds of the monotonic clock.
#include "linux/speech/StubSpeechServer.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>

using namespace sonvara::test;

namespace {

void print(const std::string& line)
{
    const std::chrono::duration<double> time = std::chrono::steady_clock::now().time_since_epoch();
    std::printf("%.6f %s\n", time.count(), line.c_str());
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2) return EXIT_FAILURE;
    StubSpeechServer server(argv[1]);
    server.setEndings(StubSpeechServer::Endings::atOnce);
    server.onLine(print);
    ::pause();
}
