// The program's entry, the same on every platform.
#pragma once

namespace sonvara {

struct Platform;

struct SonvaraApp {
    SonvaraApp() = delete;

    /// Main thread: sets the activity log up, installs the application delegate and runs the event loop.
    /// Returns the exit status when the program ends.
    [[nodiscard]] static int main(Platform& platform);
};

}  // namespace sonvara
