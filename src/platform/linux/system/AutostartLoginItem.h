// Launch at login by an autostart entry of the desktop.
#pragma once

#include "platform/linux/system/AutostartEntry.h"
#include "ports/LoginItem.h"

namespace sonvara {

/// The entry `<folder>/<identifier>.desktop`. The file is the only record. An entry that is switched
/// off or that names a program which is gone starts nothing, so it counts as off.
class AutostartLoginItem final : public LoginItem {
public:
    /// `folder` is the autostart folder; it is made when it is missing.
    AutostartLoginItem(AutostartEntry entry, const QString& identifier, const QString& folder = userFolder());

    /// The running program by its display name, and by the file that it was started from.
    [[nodiscard]] static AutostartEntry thisProgram();

    /// Where desktops look for the user's own entries.
    [[nodiscard]] static QString userFolder();

    [[nodiscard]] LoginItemStatus status() const override;
    [[nodiscard]] std::optional<std::string> registerItem() override;
    [[nodiscard]] std::optional<std::string> unregisterItem() override;

private:
    AutostartEntry entry_;
    QString folder_;
    QString path_;
};

}  // namespace sonvara
