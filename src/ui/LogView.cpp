#include "ui/LogView.h"

#include "ports/Pasteboard.h"
#include "ports/Platform.h"
#include "ui/ChangeSignal.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace sonvara {
namespace {

PushButton button(const char* title, std::function<bool()> isEnabled, std::function<void()> action)
{
    return {[title] { return std::string(title); }, std::move(isEnabled), std::move(action)};
}

void copy(Pasteboard& pasteboard, const DJLog& log)
{
    pasteboard.clearContents();
    pasteboard.setString(log.plainText());
}

}  // namespace

LogView::LogView(Platform& platform, DJLog& log, std::function<void()> dismiss)
    : platform_(platform),
      log_(log),
      dismiss_(std::move(dismiss))
{}

Symbol LogView::icon(DJLog::Level level)
{
    switch (level) {
    case DJLog::Level::success: return {"checkmark.circle.fill", ""};
    case DJLog::Level::error: return {"exclamationmark.triangle.fill", ""};
    case DJLog::Level::info: break;
    }
    return {"info.circle", ""};
}

ColorRole LogView::color(DJLog::Level level)
{
    switch (level) {
    case DJLog::Level::success: return ColorRole::systemGreen;
    case DJLog::Level::error: return ColorRole::systemOrange;
    case DJLog::Level::info: break;
    }
    return ColorRole::secondaryLabel;
}

LogRow LogView::row(const Clock& clock, const DJLog::Entry& entry)
{
    LogRow row;
    row.id = entry.id;
    row.time = {clock.timeText(entry.date), FontRole::captionMonospaced, ColorRole::secondaryLabel};
    row.symbol = icon(entry.level);
    row.symbolColor = color(entry.level);
    row.message = {entry.message, FontRole::caption, ColorRole::label};
    return row;
}

std::vector<LogRow> LogView::rows(const Clock& clock, const DJLog& log)
{
    const auto& entries = log.entries.get();
    std::vector<LogRow> rows;
    rows.reserve(entries.size());
    std::ranges::transform(entries.rbegin(), entries.rend(), std::back_inserter(rows),
                           [&clock](const auto& entry) { return row(clock, *entry); });
    return rows;
}

LogSheet LogView::sheet() const
{
    auto& platform = platform_;
    auto& log = log_;
    const auto hasEntries = [&log] { return !log.entries.get().empty(); };
    const auto always = [] { return true; };
    LogSheet sheet;
    sheet.width = 520;
    sheet.height = 420;
    sheet.title = {"Diagnostics Log", FontRole::headline, ColorRole::label};
    sheet.buttons = {button("Copy", hasEntries, [&platform, &log] { copy(platform.pasteboard, log); }),
                     button("Clear", hasEntries, [&log] { log.clear(); }), button("Done", always, dismiss_)};
    sheet.emptyText = {"No activity yet. Play a track with AI intros on.", FontRole::body,
                       ColorRole::secondaryLabel};
    sheet.rowSpacing = 4;
    sheet.columnSpacing = 8;
    sheet.rows = [&platform, &log] { return rows(platform.clock, log); };
    sheet.onChange = [&platform, &log](std::function<void()> changed) {
        const auto signal = ChangeSignal::create(platform.mainQueue, std::move(changed));
        signal->observe(log.entries);
        return signal->handle();
    };
    return sheet;
}

}  // namespace sonvara
