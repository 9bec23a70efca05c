#include "platform/posix/NoteWriter.h"

#include "volume/NoteStore.h"

#include <utility>

namespace sonvara {

NoteWriter::~NoteWriter()
{
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
    }
    changed_.notify_all();
    if (thread_.joinable()) thread_.join();
}

void NoteWriter::write(std::string text)
{
    {
        const std::lock_guard lock(mutex_);
        next_ = std::move(text);
        if (!thread_.joinable()) thread_ = std::thread([this] { work(); });
    }
    changed_.notify_all();
}

bool NoteWriter::finish(std::chrono::milliseconds limit)
{
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, limit, [this] { return !next_ && !isWriting_; });
}

void NoteWriter::work()
{
    std::unique_lock lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return next_ || isEnding_; });
        if (!next_) return;
        const auto text = *std::exchange(next_, std::nullopt);
        isWriting_ = true;
        lock.unlock();
        if (text.empty())
            store_.remove();
        else
            store_.save(text);
        lock.lock();
        isWriting_ = false;
        changed_.notify_all();
    }
}

}  // namespace sonvara
