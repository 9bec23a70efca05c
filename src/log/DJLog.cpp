#include "log/DJLog.h"

#include "ports/Queues.h"
#include "support/Uuid.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <utility>

namespace sonvara {
namespace {

std::atomic<DJLog*> sharedLog{nullptr};
std::atomic<MainQueue*> sharedMainQueue{nullptr};
std::atomic<Clock*> sharedClock{nullptr};

struct LevelNames {
    DJLog::Level level;
    std::string_view rawValue;
    std::string_view upperCase;
};
constexpr std::array levelNames{LevelNames{DJLog::Level::info, "info", "INFO"},
                                LevelNames{DJLog::Level::success, "success", "SUCCESS"},
                                LevelNames{DJLog::Level::error, "error", "ERROR"}};

const LevelNames& names(DJLog::Level level)
{
    return *std::ranges::find(levelNames, level, &LevelNames::level);
}

}  // namespace

std::string_view DJLog::rawValue(Level level)
{
    return names(level).rawValue;
}

std::optional<DJLog::Level> DJLog::levelFromRawValue(std::string_view rawValue)
{
    for (const auto& candidate : levelNames) {
        if (candidate.rawValue == rawValue) return candidate.level;
    }
    return std::nullopt;
}

void DJLog::setUp(MainQueue& mainQueue, Clock& clock)
{
    std::unique_ptr<DJLog>(sharedLog.exchange(nullptr)).reset();
    sharedClock = &clock;
    sharedMainQueue = &mainQueue;
}

DJLog& DJLog::shared()
{
    if (auto* log = sharedLog.load()) return *log;
    auto* mainQueue = sharedMainQueue.load();
    if (mainQueue == nullptr) std::abort();  // with it comes the clock
    std::unique_ptr<DJLog> made(new DJLog(*mainQueue, *sharedClock.load()));
    DJLog* first = nullptr;
    // Of several threads that come at once, one is first.
    return sharedLog.compare_exchange_strong(first, made.get()) ? *made.release() : *first;
}

DJLog::DJLog(MainQueue& mainQueue, Clock& clock) : mainQueue_(mainQueue), clock_(clock) {}

void DJLog::log(std::string message, Level level)
{
    auto entry = std::make_shared<const Entry>(Entry{makeUuid(), clock_.now(), level, std::move(message)});
    mainQueue_.post([this, entry = std::move(entry)] { append(entry); });
}

void DJLog::append(std::shared_ptr<const Entry> entry)
{
    auto list = entries.get();
    list.push_back(std::move(entry));
    setEntries(list);
    if (list.size() <= maxEntries) return;
    list.erase(list.begin(), list.end() - static_cast<std::ptrdiff_t>(maxEntries));
    setEntries(std::move(list));
}

void DJLog::setEntries(Entries list)
{
    entries.set(list);
    readable_.store(std::move(list));
}

void DJLog::recordSpoken(const std::string& text)
{
    mainQueue_.post([this, text] { lastChat.set(text); });
    log("Spoke: " + text, Level::info);
}

void DJLog::clear()
{
    mainQueue_.post([this] { setEntries({}); });
}

std::string DJLog::plainText() const
{
    std::string result;
    const auto list = readable_.load();
    if (!list) return result;
    for (const auto& entry : *list) {
        if (!result.empty()) result += '\n';
        result.append("[").append(clock_.timeText(entry->date)).append("] ");
        result.append(names(entry->level).upperCase).append(": ").append(entry->message);
    }
    return result;
}

}  // namespace sonvara
