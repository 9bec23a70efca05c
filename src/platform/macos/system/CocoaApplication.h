// The shared application object, and where the program keeps files of its own.
#pragma once

#include "ports/Application.h"

#include <functional>
#include <memory>
#include <string>

namespace sonvara {

/// Has a menu bar, which an agent never shows, for its key equivalents. To be made first and destroyed last of the
/// platform's objects: the others need the application.
class CocoaApplication final : public Application {
public:
    CocoaApplication();
    ~CocoaApplication() override;

    void setDelegate(std::weak_ptr<ApplicationDelegate> delegate) override;
    /// Does not return: the application object ends the process itself.
    int run() override;
    /// Calls `handler` on the main thread when the program is about to end by its normal path.
    void onWillTerminate(std::function<void()> handler);
    void activateIgnoringOtherApps() override;
    void terminate() override;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

/// The path for a file called `name` in the user's folder for files that support this application, which
/// need not be there yet.
[[nodiscard]] std::string supportFile(const std::string& name);

}  // namespace sonvara
