// The activity log: what the application did recently, for the user to read.
#pragma once

#include "ports/System.h"
#include "support/Observable.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sonvara {

class MainQueue;

/// A bounded log in memory and the last line that was spoken. Any thread may write; the published
/// properties change on the main thread only. Nothing goes to disk.
class DJLog {
public:
    enum class Level { info, success, error };

    /// "info", "success" or "error".
    [[nodiscard]] static std::string_view rawValue(Level level);
    /// The level of exactly such a text, else nothing.
    [[nodiscard]] static std::optional<Level> levelFromRawValue(std::string_view rawValue);

    struct Entry {
        std::string id;  ///< a random UUID, the entry's identity in lists
        WallTime date;   ///< when `log` was called
        Level level = Level::info;
        std::string message;
    };

    /// Makes the process's log, which lives until the handle is dropped. A second one beside it is a
    /// programming error and ends the process.
    [[nodiscard]] static std::unique_ptr<DJLog> makeShared(MainQueue& mainQueue, Clock& clock);
    /// Any thread: the process's log, which must exist.
    [[nodiscard]] static DJLog& shared();

    DJLog(const DJLog&) = delete;
    DJLog& operator=(const DJLog&) = delete;
    ~DJLog();

    static constexpr std::size_t maxEntries = 200;
    Observable<std::vector<Entry>> entries;  ///< oldest first, the latest `maxEntries`
    Observable<std::string> lastChat;        ///< the last text given to `recordSpoken`

    /// Any thread: adds an entry with the time of this call, soon.
    void log(std::string message, Level level);
    /// Any thread: makes `text` the last chat line and then adds an entry for it, soon.
    void recordSpoken(const std::string& text);
    /// Any thread: removes all entries, soon; the last chat line stays.
    void clear();
    /// Main thread: all entries as lines "[HH:MM:SS] LEVEL: message", without a line feed at the end.
    [[nodiscard]] std::string plainText() const;
    /// Main thread: an entry's time of day as "HH:MM:SS" on a 24-hour clock.
    [[nodiscard]] std::string timeText(const Entry& entry) const;

private:
    DJLog(MainQueue& mainQueue, Clock& clock);
    void append(Entry entry);

    MainQueue& mainQueue_;
    Clock& clock_;
};

}  // namespace sonvara
