// A value that one thread publishes and any thread reads.
#pragma once

#include <memory>
#include <utility>

namespace sonvara {

/// An immutable record behind an atomic pointer. `store` and `load` may be called from any thread; a
/// reader sees one whole record, the latest one stored before its read, or none.
///
/// The free functions are used because std::atomic<std::shared_ptr> is missing from Apple's library.
template <typename T>
class Snapshot {
public:
    void store(T value) { std::atomic_store(&record_, std::make_shared<const T>(std::move(value))); }
    [[nodiscard]] std::shared_ptr<const T> load() const { return std::atomic_load(&record_); }

private:
    std::shared_ptr<const T> record_;
};

}  // namespace sonvara
