// Launch at login by an autostart entry of the desktop.
#pragma once

#include "platform/linux/system/AutostartEntry.h"
#include "ports/LoginItem.h"

#include <chrono>
#include <functional>
#include <future>
#include <optional>
#include <string>

namespace sonvara {

class GlobalQueue;

/// The entry `<folder>/<identifier>.desktop`. The file is the only record. An entry that is switched off or that
/// names a program which is gone starts nothing, so it counts as off. A disk that does not answer in time counts
/// as one without the entry, and as a failure to change it; the change may come about later, and the next look
/// tells.
class AutostartLoginItem final : public LoginItem {
public:
    /// `folder` is the autostart folder; it is made when it is missing. The disk is used on `workers`, and waited
    /// for at most for `limit`.
    AutostartLoginItem(AutostartEntry entry, const QString& identifier, GlobalQueue& workers,
                       const QString& folder = userFolder(),
                       std::chrono::milliseconds limit = std::chrono::milliseconds(100));

    /// The running program by its display name, and by the file that it was started from.
    [[nodiscard]] static AutostartEntry thisProgram();

    /// Where desktops look for the user's own entries.
    [[nodiscard]] static QString userFolder();

    [[nodiscard]] LoginItemStatus status() const override;
    [[nodiscard]] std::optional<std::string> registerItem() override;
    [[nodiscard]] std::optional<std::string> unregisterItem() override;

private:
    template <typename Result>
    [[nodiscard]] std::optional<Result> within(std::function<Result()> call) const;
    [[nodiscard]] std::optional<std::string> change(std::function<std::optional<std::string>()> file);

    AutostartEntry entry_;
    GlobalQueue& workers_;
    QString folder_;
    QString path_;
    std::chrono::milliseconds limit_;
    mutable std::shared_future<void> last_;  // of the calls: of two changes the later one counts
};

}  // namespace sonvara
