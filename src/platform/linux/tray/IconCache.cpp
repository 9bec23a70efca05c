#include "platform/linux/tray/IconCache.h"

namespace sonvara {

QList<QImage> picturesOf(const IconContent& content, const RoleColors& colors)
{
    if (const auto* image = std::get_if<std::shared_ptr<const QtImage>>(&content))
        return (*image)->colored(colors);
    if (const auto* symbol = std::get_if<Symbol>(&content)) return QtImage(*symbol).colored(colors);
    return {};
}

}  // namespace sonvara
