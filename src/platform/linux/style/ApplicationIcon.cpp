#include "platform/linux/style/ApplicationIcon.h"

#include "platform/linux/style/TrayPicture.h"

namespace sonvara {

RoleColors applicationIconColors()
{
    const QColor ground(0x1E, 0x20, 0x26);
    auto colors = RoleColors::on(ground, Qt::white);
    colors.label = ground;
    return colors;
}

QIcon applicationIcon(const Drawing& drawing)
{
    return pictureIcon(std::make_shared<const QtImage>(drawing), applicationIconColors());
}

}  // namespace sonvara
