#include "app/SonvaraApp.h"

#include "app/AppDelegate.h"
#include "log/DJLog.h"
#include "ports/Platform.h"

#include <memory>

namespace sonvara {

int SonvaraApp::main(Platform& platform)
{
    DJLog::setUp(platform.mainQueue, platform.clock);
    const auto delegate = std::make_shared<AppDelegate>(platform);
    platform.application.setDelegate(delegate);
    return platform.application.run();
}

}  // namespace sonvara
