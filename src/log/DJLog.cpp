#include "log/DJLog.h"

#include "ports/Queues.h"
#include "support/Uuid.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <utility>

namespace sonvara {
namespace {

std::atomic<DJLog*> sharedLog{nullptr};

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

std::string twoDigits(int number)
{
    return {static_cast<char>('0' + number / 10 % 10), static_cast<char>('0' + number % 10)};
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

std::unique_ptr<DJLog> DJLog::makeShared(MainQueue& mainQueue, Clock& clock)
{
    std::unique_ptr<DJLog> log(new DJLog(mainQueue, clock));
    if (sharedLog.exchange(log.get()) != nullptr) std::abort();
    return log;
}

DJLog& DJLog::shared()
{
    auto* log = sharedLog.load();
    if (log == nullptr) std::abort();
    return *log;
}

DJLog::DJLog(MainQueue& mainQueue, Clock& clock) : mainQueue_(mainQueue), clock_(clock) {}

DJLog::~DJLog()
{
    sharedLog.store(nullptr);
}

void DJLog::log(std::string message, Level level)
{
    Entry entry{makeUuid(), clock_.now(), level, std::move(message)};
    mainQueue_.post([this, entry = std::move(entry)] { append(entry); });
}

void DJLog::append(Entry entry)
{
    entries.modify([&entry](auto& list) { list.push_back(std::move(entry)); });
    const auto count = entries.get().size();
    if (count <= maxEntries) return;
    entries.modify([count](auto& list) {
        list.erase(list.begin(), list.begin() + static_cast<std::ptrdiff_t>(count - maxEntries));
    });
}

void DJLog::recordSpoken(const std::string& text)
{
    mainQueue_.post([this, text] { lastChat.set(text); });
    log("Spoke: " + text, Level::info);
}

void DJLog::clear()
{
    mainQueue_.post([this] { entries.set({}); });
}

std::string DJLog::plainText() const
{
    std::string result;
    for (const auto& entry : entries.get()) {
        if (!result.empty()) result += '\n';
        result.append("[").append(timeText(entry)).append("] ");
        result.append(names(entry.level).upperCase).append(": ").append(entry.message);
    }
    return result;
}

std::string DJLog::timeText(const Entry& entry) const
{
    const auto time = clock_.local(entry.date);
    return twoDigits(time.hour) + ':' + twoDigits(time.minute) + ':' + twoDigits(time.second);
}

}  // namespace sonvara
