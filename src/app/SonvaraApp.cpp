#include "app/SonvaraApp.h"

#include "app/AppDelegate.h"
#include "log/DJLog.h"
#include "ports/Platform.h"

#include <memory>

namespace sonvara {

int SonvaraApp::main(Platform& platform)
{
    // Static: a worker that is still busy when the event loop has ended may write to the log.
    static std::unique_ptr<DJLog> log;
    log.reset();
    log = DJLog::makeShared(platform.mainQueue, platform.clock);
    const auto delegate = std::make_shared<AppDelegate>(platform);
    platform.application.setDelegate(delegate);
    return platform.application.run();
}

}  // namespace sonvara
