// Icons that are sharp at every size: what the tray item shows, and the application's own.
#pragma once

#include "platform/linux/style/QtImageRenderer.h"

#include <QIcon>
#include <QImage>

#include <memory>
#include <variant>

namespace sonvara {

/// What an icon shows: an image of ours (not null), a symbol, or nothing. A value.
using IconContent = std::variant<std::monostate, std::shared_ptr<const QtImage>, Symbol>;

/// Paints `content` as large as fits into `target`.
void paintIcon(QPainter& painter, const IconContent& content, const QRectF& target, const RoleColors& colors);

/// `content` on a transparent square of `side` pixels.
[[nodiscard]] QImage rasterize(const IconContent& content, int side, const RoleColors& colors);

/// An icon that paints the shapes of `content` anew at every size and scale.
[[nodiscard]] QIcon scalableIcon(const IconContent& content, const RoleColors& colors);

/// The colours of the application's own icon, whose drawing stands on a dark ground of its own.
[[nodiscard]] RoleColors applicationIconColors();

/// The application's own icon, from `drawing`. Main thread.
[[nodiscard]] QIcon applicationIcon(const Drawing& drawing);

}  // namespace sonvara
