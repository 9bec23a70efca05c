#import "platform/macos/windows/FormView.h"

#import "platform/macos/windows/Layout.h"

#include <algorithm>
#include <utility>

namespace sonvara {

namespace {

// Tight enough for a form of some ten rows to need no scrolling.
constexpr double margin = 10;
constexpr double boxPadding = 8;
constexpr double rowGap = 5;
constexpr double headerGap = 3;
constexpr double sectionGap = 10;

ObjcPtr<NSBox> makeGroup(NSRect frame)
{
    auto box = ObjcPtr<NSBox>::adopt([[NSBox alloc] initWithFrame:frame]);
    [box.get() setTitlePosition:NSNoTitle];
    [box.get() setContentViewMargins:NSZeroSize];
    return box;
}

}  // namespace

FormView::FormView(std::shared_ptr<const Form> form, NSWindow* window)
    : form_(std::move(form)),
      window_(window),
      content_(ObjcPtr<SNVFlippedView>::adopt(
          [[SNVFlippedView alloc] initWithFrame:NSMakeRect(0, 0, form_->width, form_->height)])),
      scroll_(makeScrollView(content_.get(), NSMakeRect(0, 0, form_->width, form_->height)))
{
    if (layOut(form_->width) > form_->height) {
        // A scroller that is always shown, as the user may have chosen, takes room from the content.
        [scroll_.get() setHasVerticalScroller:YES];
        layOut([scroll_.get() contentSize].width);
    }
    refresh();
    changes_ = form_->onChange([this] { refresh(); });
}

double FormView::layOut(double width)
{
    rows_.clear();
    while ([[content_.get() subviews] count] > 0)
        [[[content_.get() subviews] lastObject] removeFromSuperview];
    double y = margin;
    for (const FormSection& section : form_->sections)
        y = addSection(section, {content_.get(), margin, y, width - 2 * margin});
    const double height = y - sectionGap + margin;
    [content_.get() setFrameSize:NSMakeSize(width, std::max(form_->height, height))];
    return height;
}

double FormView::addSection(const FormSection& section, const RowPlace& place)
{
    const StyledText header{section.header, FontRole::headline, ColorRole::label};
    const double headerHeight = wrappedHeight(header, place.width);
    const auto label = makeLabel(header);
    [label.get() setFrame:NSMakeRect(place.x, place.y, place.width, headerHeight)];
    [place.parent addSubview:label.get()];

    const double top = place.y + headerHeight + headerGap;
    const auto rows = ObjcPtr<SNVFlippedView>::adopt(
        [[SNVFlippedView alloc] initWithFrame:NSMakeRect(place.x, top, place.width, 0)]);
    const double height = addRows(section, rows.get());
    [rows.get() setFrameSize:NSMakeSize(place.width, height)];
    [place.parent addSubview:makeGroup([rows.get() frame]).get()];
    [place.parent addSubview:rows.get()];  // over the box, not in it: a box moves its content about
    return top + height + sectionGap;
}

double FormView::addRows(const FormSection& section, NSView* box)
{
    double y = boxPadding;
    for (const FormRow& row : section.rows) {
        rows_.push_back(makeRow(row, {box, boxPadding, y, [box frame].size.width - 2 * boxPadding}));
        y += rows_.back()->height() + rowGap;
    }
    return y - rowGap + boxPadding;
}

void FormView::appear()
{
    form_->onAppear();
    refresh();
}

void FormView::refresh()
{
    for (const auto& row : rows_) row->refresh();
    refreshSheet();
}

void FormView::refreshSheet()
{
    const bool isWanted = form_->isSheetShown.get();
    if (isWanted == (sheet_ != nullptr)) return;
    sheet_ = isWanted ? std::make_unique<LogSheetWindow>(form_->sheet(), window_,
                                                         [form = form_] { form->isSheetShown.set(false); })
                      : nullptr;
}

}  // namespace sonvara
