// The user's settings in an INI file.
#pragma once

#include "ports/UserDefaults.h"
#include "support/Callbacks.h"

#include <chrono>
#include <memory>
#include <string>

namespace sonvara {

class SystemLog;

/// To be made and destroyed on the main thread. Opens the file when it is used first, on a thread of its own on
/// which everything of the disk happens: a value that is set counts at once and is written soon. Of several
/// values that wait for the disk the last one of each key is written, all in one step; what other processes
/// wrote under other keys is kept. Their changes are noticed while the event loop runs.
///
/// The values true, false, 1 and 0 are Booleans, every value but a list is a string. A damaged file keeps its
/// readable values; the first failure to write is reported to the system log.
class IniUserDefaults final : public UserDefaults {
public:
    /// How long the main thread may wait for a disk.
    static constexpr std::chrono::milliseconds patience{100};

    /// The settings in the file `path`, whose folder is made if it is missing. The first use waits for the file at
    /// most for `openLimit`; the settings are at their defaults until it has been read. `log` outlives this.
    IniUserDefaults(const std::string& path, SystemLog& log, std::chrono::milliseconds openLimit = patience);
    /// Waits for the disk: see `flush`.
    ~IniUserDefaults() override;

    /// Where the user's settings are: sonvara/sonvara.conf in the user's folder for configurations.
    [[nodiscard]] static std::string standardPath();

    [[nodiscard]] bool hasObject(const std::string& key) const override;
    [[nodiscard]] bool boolForKey(const std::string& key) const override;
    [[nodiscard]] std::optional<std::string> stringForKey(const std::string& key) const override;
    void setBool(const std::string& key, bool value) override;
    void setString(const std::string& key, const std::string& value) override;
    [[nodiscard]] Subscription onChange(std::function<void()> changed) override;

    /// Waits until all that was set is written, or cannot be. False after `limit`: the disk hangs, and so would the
    /// end of this object.
    [[nodiscard]] bool flush(std::chrono::milliseconds limit);

private:
    class Disk;

    void set(const std::string& key, const std::string& value);

    Callbacks<> changed_;
    const std::unique_ptr<Disk> disk_;
};

}  // namespace sonvara
