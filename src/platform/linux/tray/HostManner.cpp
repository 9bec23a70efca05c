#include "platform/linux/tray/HostManner.h"

#include <QString>
#include <QStringList>

namespace sonvara {

HostManner HostManner::ofThisDesktop()
{
    const bool isPlasma = isDesktop("KDE");
    return {.growsItems = !isPlasma && !isDesktop("LXQt"),
            .opensMenuOnRefusal = isPlasma,
            .wrapsToolTip = !isDesktop("X-Cinnamon")};
}

bool isDesktop(const char* name)
{
    return qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(QLatin1Char(':')).contains(QLatin1String(name));
}

}  // namespace sonvara
