// Keeps the system from putting the program to sleep at its post.
#pragma once

#include <memory>

namespace sonvara {

/// An agent that shows no window is napped by the system: its timers come late, up to minutes. While this is held its
/// timer is on time. The Mac itself may fall asleep. Any thread, one call at a time.
class Wakefulness {
public:
    Wakefulness();
    ~Wakefulness();

    /// Holds it from now on, or lets it go.
    void hold(bool isNeeded);

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace sonvara
