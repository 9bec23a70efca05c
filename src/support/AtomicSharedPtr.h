// A value that one thread publishes and any thread reads.
#pragma once

#include <atomic>
#include <forward_list>
#include <memory>
#include <utility>

namespace sonvara {

/// An immutable record that is replaced as a whole. `load` may be called on any thread and sees the latest
/// record stored before it, or none; it never waits. `store` belongs to one thread.
///
/// Neither the atomic functions for std::shared_ptr (deprecated) nor std::atomic<std::shared_ptr> (missing
/// from Apple's library) would do. So the writer keeps what it has replaced until it finds no reader under
/// way: one that comes later sees the new record.
template <typename T>
class AtomicSharedPtr {
public:
    void store(T value)
    {
        records_.push_front(std::make_shared<const T>(std::move(value)));
        latest_ = &records_.front();
        if (readers_ == 0) records_.erase_after(records_.begin(), records_.end());
    }

    [[nodiscard]] std::shared_ptr<const T> load() const
    {
        ++readers_;
        const Record* const latest = latest_;
        auto record = latest != nullptr ? *latest : nullptr;
        --readers_;
        return record;
    }

private:
    using Record = std::shared_ptr<const T>;

    std::forward_list<Record> records_;  // the latest first
    std::atomic<const Record*> latest_{nullptr};
    mutable std::atomic<int> readers_{0};  // that may hold a pointer into the list
};

}  // namespace sonvara
