#import "platform/macos/FormView.h"

#import "platform/macos/Layout.h"

#include <algorithm>
#include <utility>

namespace sonvara {

namespace {

constexpr double margin = 20;
constexpr double boxPadding = 10;
constexpr double rowGap = 8;
constexpr double headerGap = 6;
constexpr double sectionGap = 16;

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
    double y = margin;
    for (const FormSection& section : form_->sections) y = addSection(section, y);
    const double height = y - sectionGap + margin;
    [content_.get() setFrameSize:NSMakeSize(form_->width, std::max(form_->height, height))];
    [scroll_.get() setHasVerticalScroller:(height > form_->height ? YES : NO)];
    refresh();
    changes_ = form_->onChange([this] { refresh(); });
}

double FormView::addSection(const FormSection& section, double y)
{
    const double width = form_->width - 2 * margin;
    const StyledText header{section.header, FontRole::headline, ColorRole::label};
    const double headerHeight = wrappedHeight(header, width);
    const auto label = makeLabel(header);
    [label.get() setFrame:NSMakeRect(margin, y, width, headerHeight)];
    [content_.get() addSubview:label.get()];
    y += headerHeight + headerGap;

    const auto rows = ObjcPtr<SNVFlippedView>::adopt(
        [[SNVFlippedView alloc] initWithFrame:NSMakeRect(margin, y, width, 0)]);
    const double height = addRows(section, rows.get());
    [rows.get() setFrameSize:NSMakeSize(width, height)];
    [content_.get() addSubview:makeGroup([rows.get() frame]).get()];
    [content_.get() addSubview:rows.get()];  // over the box, not in it: a box moves its content about
    return y + height + sectionGap;
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
