// The user's settings in an INI file.
#pragma once

#include "ports/UserDefaults.h"
#include "support/AtomicSharedPtr.h"
#include "support/Callbacks.h"

#include <QFileSystemWatcher>
#include <QSettings>
#include <QTimer>
#include <cstdint>
#include <map>
#include <string>
#include <sys/types.h>

namespace sonvara {

class SystemLog;

/// To be made and destroyed on the main thread. A write is on the disk when the call returns, and
/// keeps what other processes wrote under other keys. Their changes are noticed while the event loop
/// runs. The values true, false, 1 and 0 are Booleans, every value but a list is a string. A damaged
/// file keeps its readable values; the first failure to write is reported to the system log.
class IniUserDefaults final : public UserDefaults {
public:
    /// The settings in the file `path`, whose folder is made if it is missing.
    IniUserDefaults(const std::string& path, SystemLog& log);

    /// Where the user's settings are: sonvara/sonvara.conf in the user's folder for configurations.
    [[nodiscard]] static std::string standardPath();

    [[nodiscard]] bool hasObject(const std::string& key) const override;
    [[nodiscard]] bool boolForKey(const std::string& key) const override;
    [[nodiscard]] std::optional<std::string> stringForKey(const std::string& key) const override;
    void setBool(const std::string& key, bool value) override;
    void setString(const std::string& key, const std::string& value) override;
    [[nodiscard]] Subscription onChange(std::function<void()> changed) override;

private:
    /// A stored value; absent for one that is not a text.
    using Values = std::map<std::string, std::optional<std::string>>;

    /// A state of the file; another file or another content differs in something.
    struct State {
        dev_t device = 0;
        ino_t file = 0;
        off_t size = 0;
        std::int64_t changed = 0;  // ns since 1970; no program can set it

        bool operator==(const State&) const = default;
    };

    [[nodiscard]] static State stateOf(const QString& path);
    [[nodiscard]] Values read() const;
    void readAgain();
    void readUntilUnchanged();
    void touch();
    void write(const std::string& key, const QVariant& value);
    void refresh();
    void watch();
    void reportFailure();

    SystemLog& log_;
    State beforeReading_;  // taken before `settings_` is made, which reads the file
    QSettings settings_;
    AtomicSharedPtr<Values> values_;  // what the other threads read
    Callbacks<> changed_;
    QFileSystemWatcher watcher_;
    QTimer settling_;  // one look at the file for the many signals of one change
    bool isFailureReported_ = false;
};

}  // namespace sonvara
