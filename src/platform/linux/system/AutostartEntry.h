// The text of a desktop entry that starts a program at login.
#pragma once

#include <QByteArray>
#include <QString>

namespace sonvara {

/// What is to be started. `program` is an absolute path.
struct AutostartEntry {
    QString name;
    QString program;
    QString icon;  ///< its name in icon themes
};

/// The entry's file, valid by the Desktop Entry Specification whatever characters the values hold.
[[nodiscard]] QByteArray autostartText(const AutostartEntry& entry);

/// What such a file says, also when somebody else has written or changed it.
struct AutostartState {
    bool isOff = false;  ///< hidden, which counts as removed, or switched off as GNOME does it
    QString program;     ///< as the entry calls it; empty when it names none
};
[[nodiscard]] AutostartState readAutostart(const QByteArray& text);

}  // namespace sonvara
