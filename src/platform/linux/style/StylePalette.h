// Maps the interface's font and colour roles to the user's theme.
#pragma once

#include "ports/Style.h"

#include <QColor>
#include <QFont>
#include <QPalette>

namespace sonvara {

/// The colours of the roles on one kind of surroundings. A value; any thread.
struct RoleColors {
    QColor label;
    QColor secondaryLabel;
    QColor systemGreen;
    QColor systemOrange;

    [[nodiscard]] QColor operator[](ColorRole role) const;

    /// Colours that read well on `background`, with `text` as its usual text colour.
    [[nodiscard]] static RoleColors on(const QColor& background, const QColor& text);
    /// The same for what a theme shows in its windows.
    [[nodiscard]] static RoleColors of(const QPalette& palette);
};

/// `share` (0 to 1) of `over` on the rest of `under`.
[[nodiscard]] QColor mixed(const QColor& over, const QColor& under, double share);

/// The user's font for a role. Main thread.
[[nodiscard]] QFont roleFont(FontRole role);

}  // namespace sonvara
