#import "platform/macos/windows/LogRowList.h"

#import "platform/macos/windows/CocoaStyle.h"

#include <algorithm>
#include <utility>

namespace sonvara {

namespace {

constexpr double padding = 16;
constexpr double symbolSize = 14;

ObjcPtr<NSImageView> makeSymbolView(const LogRow& row)
{
    auto view = ObjcPtr<NSImageView>::adopt([[NSImageView alloc] initWithFrame:NSZeroRect]);
    NSImageSymbolConfiguration* size =
        [NSImageSymbolConfiguration configurationWithPointSize:[fontFor(row.symbolFont) pointSize]
                                                        weight:NSFontWeightRegular];
    [view.get() setImage:[imageFor(row.symbol) imageWithSymbolConfiguration:size]];
    [view.get() setImageScaling:NSImageScaleProportionallyDown];
    [view.get() setContentTintColor:colorFor(row.symbolColor)];
    return view;
}

}  // namespace

LogRowList::LogRowList(const LogSheet& sheet, NSRect frame)
    : rowSpacing_(sheet.rowSpacing),
      columnSpacing_(sheet.columnSpacing),
      document_(ObjcPtr<SNVFlippedView>::adopt(
          [[SNVFlippedView alloc] initWithFrame:NSMakeRect(0, 0, frame.size.width, frame.size.height)])),
      scroll_(makeScrollView(document_.get(), frame)),
      scrolled_(
          ObjcPtr<SNVActionTarget>::adopt([[SNVActionTarget alloc] initWithAction:[this] { fillVisible(); }]))
{
    [scroll_.get() setHasVerticalScroller:YES];
    width_ = [scroll_.get() contentSize].width - 2 * padding;
    NSClipView* clip = [scroll_.get() contentView];
    [clip setPostsBoundsChangedNotifications:YES];
    [[NSNotificationCenter defaultCenter] addObserver:scrolled_.get()
                                             selector:@selector(perform:)
                                                 name:NSViewBoundsDidChangeNotification
                                               object:clip];
}

LogRowList::~LogRowList()
{
    [[NSNotificationCenter defaultCenter] removeObserver:scrolled_.get()];
}

void LogRowList::show(std::vector<LogRow> rows)
{
    const auto place = readersPlace();
    update(std::move(rows));
    placeAll();
    if (place) restore(*place);
    fillVisible();
    [document_.get() setNeedsDisplay:YES];  // a view that only moves is not drawn anew
}

/// Absent for a reader at the top, who sees what comes.
std::optional<LogRowList::Place> LogRowList::readersPlace() const
{
    const double top = NSMinY([scroll_.get() documentVisibleRect]);
    if (top <= 0) return std::nullopt;
    const auto first = std::find_if(entries_.begin(), entries_.end(),
                                    [top](const Entry& entry) { return entry.top + entry.height > top; });
    if (first == entries_.end()) return std::nullopt;
    return Place{first->row.id, first->top - top};
}

void LogRowList::restore(const Place& place)
{
    const auto first = std::find_if(entries_.begin(), entries_.end(),
                                    [&place](const Entry& entry) { return entry.row.id == place.id; });
    if (first != entries_.end()) [document_.get() scrollPoint:NSMakePoint(0, first->top - place.offset)];
}

void LogRowList::update(std::vector<LogRow> rows)
{
    std::vector<Entry> next;
    next.reserve(rows.size());
    for (LogRow& row : rows) next.push_back(takeOrMake(std::move(row)));
    for (const Entry& gone : entries_) [gone.view.get() removeFromSuperview];
    entries_ = std::move(next);
}

LogRowList::Entry LogRowList::takeOrMake(LogRow row)
{
    const auto known = std::find_if(entries_.begin(), entries_.end(),
                                    [&row](const Entry& entry) { return entry.row.id == row.id; });
    if (known != entries_.end()) {
        Entry entry = std::move(*known);
        entries_.erase(known);
        return entry;
    }
    Entry entry;
    const double height = wrappedHeight(row.message, width_ - messageLeft(row));
    entry.height = std::max({height, wrappedHeight(row.time, width_), symbolSize});
    entry.row = std::move(row);
    return entry;
}

double LogRowList::messageLeft(const LogRow& row) const
{
    return lineWidth(row.time) + columnSpacing_ + symbolSize + columnSpacing_;
}

void LogRowList::placeAll()
{
    double y = padding;
    for (Entry& entry : entries_) {
        entry.top = y;
        [entry.view.get() setFrameOrigin:NSMakePoint(padding, y)];
        y += entry.height + rowSpacing_;
    }
    const double height =
        std::max(y - rowSpacing_ + padding, [[scroll_.get() contentView] bounds].size.height);
    [document_.get() setFrameSize:NSMakeSize(width_ + 2 * padding, height)];
}

void LogRowList::fillVisible()
{
    const NSRect visible = [scroll_.get() documentVisibleRect];
    for (Entry& entry : entries_) {
        const bool inSight = entry.top < NSMaxY(visible) && entry.top + entry.height > NSMinY(visible);
        if (!inSight || entry.view) continue;
        entry.view = makeView(entry);
        [document_.get() addSubview:entry.view.get()];
    }
}

ObjcPtr<SNVFlippedView> LogRowList::makeView(const Entry& entry) const
{
    auto view = ObjcPtr<SNVFlippedView>::adopt(
        [[SNVFlippedView alloc] initWithFrame:NSMakeRect(padding, entry.top, width_, entry.height)]);
    const double timeWidth = lineWidth(entry.row.time);
    const auto time = makeLabel(entry.row.time);
    [time.get() setFrame:NSMakeRect(0, 0, timeWidth, wrappedHeight(entry.row.time, width_))];
    [view.get() addSubview:time.get()];

    const auto symbol = makeSymbolView(entry.row);
    [symbol.get() setFrame:NSMakeRect(timeWidth + columnSpacing_, 0, symbolSize, symbolSize)];
    [view.get() addSubview:symbol.get()];

    const double left = messageLeft(entry.row);
    const auto message = makeLabel(entry.row.message);
    [message.get() setSelectable:YES];
    [message.get() setFrame:NSMakeRect(left, 0, width_ - left, entry.height)];
    [view.get() addSubview:message.get()];
    return view;
}

}  // namespace sonvara
