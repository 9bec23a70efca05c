// Writes notes to the disk while nobody waits for it.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace sonvara {

class NoteStore;

/// One thread that writes, and a box that holds the latest text: those in between are never written.
class NoteWriter {
public:
    /// The store must outlive this.
    explicit NoteWriter(NoteStore& store) : store_(store) {}
    /// Waits for the disk: see `finish`.
    ~NoteWriter();
    NoteWriter(const NoteWriter&) = delete;
    NoteWriter& operator=(const NoteWriter&) = delete;

    /// Replaces the text; an empty one removes it. Any thread; returns at once.
    void write(std::string text);

    /// Waits until everything is written, and returns whether it is: else the disk hangs, and so would the
    /// end of this object.
    [[nodiscard]] bool finish(std::chrono::milliseconds limit);

private:
    void work();

    NoteStore& store_;
    std::mutex mutex_;  ///< guards the rest; never held while the disk works
    std::condition_variable changed_;
    std::optional<std::string> next_;
    bool isWriting_ = false;
    bool isEnding_ = false;
    std::thread thread_;  ///< from the first text on
};

}  // namespace sonvara
