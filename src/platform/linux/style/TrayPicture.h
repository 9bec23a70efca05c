// What the tray item shows at the moment.
#pragma once

#include "platform/linux/style/QtImageRenderer.h"

#include <QIcon>
#include <QImage>

#include <memory>
#include <variant>

namespace sonvara {

/// An image of ours (not null), a symbol, or nothing. A value.
using TrayPicture = std::variant<std::monostate, std::shared_ptr<const QtImage>, Symbol>;

/// Paints the picture as large as fits into `target`.
void paintPicture(QPainter& painter, const TrayPicture& picture, const QRectF& target,
                  const RoleColors& colors);

/// The picture on a transparent square of `side` pixels.
[[nodiscard]] QImage rasterize(const TrayPicture& picture, int side, const RoleColors& colors);

/// An icon that paints the picture's shapes anew at every size and scale.
[[nodiscard]] QIcon pictureIcon(const TrayPicture& picture, const RoleColors& colors);

}  // namespace sonvara
