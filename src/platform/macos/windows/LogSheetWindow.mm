#import "platform/macos/windows/LogSheetWindow.h"

#include <algorithm>
#include <utility>

/// A sheet that the Escape key dismisses.
@interface SNVSheetPanel : NSPanel {
    std::function<void()> dismissed_;
}
- (void)setDismissed:(std::function<void()>)dismissed;
- (void)cancelOperation:(id)sender;
@end

@implementation SNVSheetPanel

- (void)setDismissed:(std::function<void()>)dismissed
{
    dismissed_ = std::move(dismissed);
}

- (void)cancelOperation:(id)sender
{
    (void)sender;
    const auto dismissed = dismissed_;
    if (dismissed) dismissed();
}

@end

namespace sonvara {

namespace {

constexpr double padding = 16;
constexpr double gap = 8;
constexpr double buttonHeight = 26;

ObjcPtr<SNVSheetPanel> makePanel(NSRect frame)
{
    auto panel =
        ObjcPtr<SNVSheetPanel>::adopt([[SNVSheetPanel alloc] initWithContentRect:frame
                                                                       styleMask:NSWindowStyleMaskTitled
                                                                         backing:NSBackingStoreBuffered
                                                                           defer:YES]);
    [panel.get() setReleasedWhenClosed:NO];
    // Else neither Quit nor a logout would get past an open sheet.
    [panel.get() setPreventsApplicationTerminationWhenModal:NO];
    return panel;
}

}  // namespace

LogSheetWindow::LogSheetWindow(LogSheet sheet, NSWindow* parent, std::function<void()> dismissed)
    : sheet_(std::move(sheet)),
      parent_(ObjcPtr<NSWindow>::share(parent)),
      panel_(makePanel(NSMakeRect(0, 0, sheet_.width, sheet_.height))),
      content_(ObjcPtr<SNVFlippedView>::adopt(
          [[SNVFlippedView alloc] initWithFrame:NSMakeRect(0, 0, sheet_.width, sheet_.height)]))
{
    [panel_.get() setDismissed:std::move(dismissed)];
    [panel_.get() setContentView:content_.get()];
    addContent(addHeader());
    refresh();
    changes_ = sheet_.onChange([this] { refresh(); });
    [parent beginSheet:panel_.get() completionHandler:nullptr];
}

LogSheetWindow::~LogSheetWindow()
{
    [panel_.get() setDismissed:nullptr];
    [parent_.get() endSheet:panel_.get()];
    [panel_.get() orderOut:nil];
}

double LogSheetWindow::addHeader()
{
    double right = sheet_.width - padding;
    for (auto content = sheet_.buttons.rbegin(); content != sheet_.buttons.rend(); ++content) {
        const auto button = makePushButton();
        showPushButton(button.get(), *content);
        const double width = pushButtonWidth(button.get());
        right -= width;
        [button.get() setFrame:NSMakeRect(right, padding, width, buttonHeight)];
        right -= gap;
        buttons_.push_back(
            {*content, button, std::make_unique<ControlAction>(button.get(), content->action)});
    }
    // In reading order, which is also the order of the Tab key.
    std::reverse(buttons_.begin(), buttons_.end());
    for (const HeaderButton& button : buttons_) [content_.get() addSubview:button.button.get()];

    const auto title = makeLabel(sheet_.title);
    const double titleHeight = wrappedHeight(sheet_.title, right - padding);
    [title.get() setFrame:NSMakeRect(padding, padding + (buttonHeight - titleHeight) / 2, right - padding,
                                     titleHeight)];
    [content_.get() addSubview:title.get()];
    return padding + buttonHeight + padding;
}

void LogSheetWindow::addContent(double top)
{
    const auto divider =
        ObjcPtr<NSBox>::adopt([[NSBox alloc] initWithFrame:NSMakeRect(0, top, sheet_.width, 1)]);
    [divider.get() setBoxType:NSBoxSeparator];
    [content_.get() addSubview:divider.get()];

    const NSRect area = NSMakeRect(0, top + 1, sheet_.width, sheet_.height - top - 1);
    rows_ = std::make_unique<LogRowList>(sheet_, area);
    [content_.get() addSubview:rows_->view()];

    emptyText_ = makeLabel(sheet_.emptyText);
    [emptyText_.get() setAlignment:NSTextAlignmentCenter];
    const double width = area.size.width - 2 * padding;
    const double height = wrappedHeight(sheet_.emptyText, width);
    [emptyText_.get()
        setFrame:NSMakeRect(padding, area.origin.y + (area.size.height - height) / 2, width, height)];
    [content_.get() addSubview:emptyText_.get()];
}

void LogSheetWindow::refresh()
{
    for (const HeaderButton& button : buttons_) showPushButton(button.button.get(), button.content);
    auto rows = sheet_.rows();
    [emptyText_.get() setHidden:(rows.empty() ? NO : YES)];
    [rows_->view() setHidden:(rows.empty() ? YES : NO)];
    rows_->show(std::move(rows));
}

}  // namespace sonvara
