// A file of settings that other programs write, too.
#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QSettings>
#include <QString>
#include <QTimer>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <sys/types.h>

namespace sonvara {

/// To be made, used and destroyed on one thread, whose event loop notices what others write. Everything may
/// block as disks do.
class IniFile final : public QObject {
    Q_OBJECT

public:
    /// Stored values by their keys; absent for one that is not a text.
    using Values = std::map<std::string, std::optional<std::string>>;

    /// The file `path`, whose folder is made if it is missing.
    explicit IniFile(const QString& path);

    [[nodiscard]] Values values() const;

    /// Adds these values, in one step, to what the file holds now. False: it cannot be written, and what was to
    /// be added stays in memory until the next call.
    [[nodiscard]] bool add(const std::map<std::string, std::string>& values);

Q_SIGNALS:
    /// Another program may have changed the values.
    void changed();

private:
    /// A state of the file; another file or another content differs in something.
    struct State {
        dev_t device = 0;
        ino_t file = 0;
        off_t size = 0;
        std::int64_t changed = 0;  // ns since 1970; no program can set it

        bool operator==(const State&) const = default;
    };

    [[nodiscard]] static State stateOf(const QString& path);
    void readAgain();
    void readUntilUnchanged();
    void touch();
    void watch();

    State beforeReading_;  // taken before `settings_` is made, which reads the file
    QSettings settings_;
    QFileSystemWatcher watcher_;
    QTimer settling_;  // one look at the file for the many signals of one change
};

}  // namespace sonvara
