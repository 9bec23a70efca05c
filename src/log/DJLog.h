// The activity log: what the application did recently, for the user to read.
#pragma once

#include "ports/System.h"
#include "support/AtomicSharedPtr.h"
#include "support/Observable.h"

#include <cstddef>
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
    /// Entries never change, so that lists of them share them.
    using Entries = std::vector<std::shared_ptr<const Entry>>;

    /// Main thread: what the shared log is to run on. To be said before its first use; said again, it ends the log
    /// that was, which nobody may use any more.
    static void setUp(MainQueue& mainQueue, Clock& clock);
    /// Any thread: the process's log, made on first use. Nothing destroys it at the end of the process, when workers
    /// may still write to it.
    [[nodiscard]] static DJLog& shared();

    DJLog(const DJLog&) = delete;
    DJLog& operator=(const DJLog&) = delete;
    ~DJLog() = default;

    static constexpr std::size_t maxEntries = 200;
    Observable<Entries> entries;       ///< oldest first, the latest `maxEntries`
    Observable<std::string> lastChat;  ///< the last text given to `recordSpoken`

    /// Any thread: adds an entry with the time of this call, soon.
    void log(std::string message, Level level);
    /// Any thread: makes `text` the last chat line and then adds an entry for it, soon.
    void recordSpoken(const std::string& text);
    /// Any thread: removes all entries, soon; the last chat line stays.
    void clear();
    /// Any thread, never waits: all entries as lines "[HH:MM:SS] LEVEL: message", without a line feed at the end.
    [[nodiscard]] std::string plainText() const;

private:
    DJLog(MainQueue& mainQueue, Clock& clock);
    void append(std::shared_ptr<const Entry> entry);
    void setEntries(Entries list);

    MainQueue& mainQueue_;
    Clock& clock_;
    AtomicSharedPtr<Entries> readable_;  ///< the value of `entries`, for every thread
};

}  // namespace sonvara
