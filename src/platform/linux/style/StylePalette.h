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
    /// Drawn around what takes the label's colour; invalid for nothing, as where the surroundings are known.
    QColor halo{};

    friend bool operator==(const RoleColors&, const RoleColors&) = default;

    /// Which of the colours is a role's.
    [[nodiscard]] static QColor RoleColors::* member(ColorRole role);
    [[nodiscard]] QColor operator[](ColorRole role) const { return this->*member(role); }

    /// Colours that read well on `background`, with `text` as its usual text colour.
    [[nodiscard]] static RoleColors on(const QColor& background, const QColor& text);
    /// The same with a halo of the opposite tone: some of it stands out on whatever the surroundings are.
    [[nodiscard]] RoleColors withHalo() const;
    /// The same for what a theme shows in its windows.
    [[nodiscard]] static RoleColors of(const QPalette& palette);
};

/// `share` (0 to 1) of `over` on the rest of `under`.
[[nodiscard]] QColor mixed(const QColor& over, const QColor& under, double share);

/// The user's font for a role. Main thread.
[[nodiscard]] QFont roleFont(FontRole role);

}  // namespace sonvara
