// Hears of changes of the user's fonts and colours.
#pragma once

#include <QObject>
#include <QTimer>

namespace sonvara {

/// Widgets whose font or palette was set are not told by Qt when the theme below changes; this tells them.
/// Main thread; lives as long as the application object.
class ThemeWatcher final : public QObject {
    Q_OBJECT

public:
    [[nodiscard]] static ThemeWatcher& instance();

Q_SIGNALS:
    /// Fonts or colours changed; once for changes that come together.
    void changed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit ThemeWatcher(QObject* application);

    QTimer soon_;
};

}  // namespace sonvara
