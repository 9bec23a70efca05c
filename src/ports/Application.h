// Port: the application object and its event loop.
#pragma once

#include <memory>

namespace sonvara {

/// What the application object calls back.
class ApplicationDelegate {
public:
    virtual ~ApplicationDelegate() = default;

    /// Main thread, once, when launching has finished and the event loop runs.
    virtual void applicationDidFinishLaunching() = 0;

    /// Main thread: the user asks for the application although it runs already, by starting it again
    /// or because the desktop has no place for its status item.
    virtual void applicationDidReopen() = 0;
};

/// The one application object. Main thread only.
class Application {
public:
    virtual ~Application() = default;

    /// Sets who is told that launching has finished; held weakly. To be called before `run`.
    virtual void setDelegate(std::weak_ptr<ApplicationDelegate> delegate) = 0;

    /// Runs the event loop; returns the process's exit status when the program ends, if it returns.
    virtual int run() = 0;

    /// Brings the application in front of the others.
    virtual void activateIgnoringOtherApps() = 0;

    /// Ends the program by the platform's normal path; may return before it has ended.
    virtual void terminate() = 0;
};

}  // namespace sonvara
