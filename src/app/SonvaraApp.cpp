#include "app/SonvaraApp.h"

#include "app/AppDelegate.h"
#include "log/DJLog.h"
#include "ports/Platform.h"
#include "ports/System.h"

#include <memory>

namespace sonvara {

bool SonvaraApp::isInert(const Environment& environment)
{
    return environment.variables().contains("XCTestConfigurationFilePath");
}

int SonvaraApp::main(Platform& platform)
{
    // A worker that is still busy when the event loop has ended, or the process ends, may write to the log: so it
    // stays until the next one is made, and nothing destroys it on the way out.
    static DJLog* log = nullptr;
    std::unique_ptr<DJLog>(log).reset();
    log = DJLog::makeShared(platform.mainQueue, platform.clock).release();
    const auto delegate = std::make_shared<AppDelegate>(platform);
    platform.application.setDelegate(delegate);
    return platform.application.run();
}

}  // namespace sonvara
