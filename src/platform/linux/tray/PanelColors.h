// The colours of the panel that the tray item sits on.
#pragma once

#include "platform/linux/style/StylePalette.h"

#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QObject>

#include <functional>
#include <optional>

namespace sonvara {

/// No desktop tells an application the colour of its panel's text. This asks what is known to decide it:
/// Xfce's dark panel, GNOME's bar, which is always dark, then the desktop's preference for dark or light, and
/// at last the theme of the application itself. Any of them can be wrong about the panel, so the colours have a
/// halo. Main thread.
class PanelColors final : public QObject {
    Q_OBJECT

public:
    PanelColors();

    [[nodiscard]] RoleColors colors() const;

Q_SIGNALS:
    /// `colors` may give others now.
    void changed();

private Q_SLOTS:
    void portalSettingChanged(const QString& group, const QString& key, const QDBusVariant& value);
    void xfceSettingChanged(const QString& channel, const QString& property, const QDBusVariant& value);

private:
    void askPortal();
    void askXfce();
    void ask(const QDBusMessage& question, std::function<void(const QVariant&)> answered);
    [[nodiscard]] std::optional<bool> isKnownDark() const;

    std::optional<bool> prefersDark_;  ///< the desktop's preference
    std::optional<bool> isXfcePanelDark_;
    bool isGnome_;
    QDBusServiceWatcher services_;  ///< a service that starts later is asked then
};

}  // namespace sonvara
