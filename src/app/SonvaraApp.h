// The program's entry, the same on every platform.
#pragma once

namespace sonvara {

class Environment;
struct Platform;

struct SonvaraApp {
    SonvaraApp() = delete;

    /// Whether a test harness holds the program, as the environment says: then it uses no port but the
    /// application.
    [[nodiscard]] static bool isInert(const Environment& environment);

    /// Main thread: makes the activity log, installs the application delegate and runs the event loop.
    /// Returns the exit status when the program ends.
    [[nodiscard]] static int main(Platform& platform);
};

}  // namespace sonvara
