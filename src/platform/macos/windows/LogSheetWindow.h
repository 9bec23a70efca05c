// A log as a sheet over a window. For Objective-C++ sources only.
#pragma once

#import "platform/macos/windows/ActionTarget.h"
#import "platform/macos/windows/Layout.h"
#import "platform/macos/windows/LogRowList.h"
#include "ports/Form.h"

#import <AppKit/AppKit.h>

#include <functional>
#include <memory>
#include <vector>

@class SNVSheetPanel;

namespace sonvara {

/// Lies over its parent for the life of this object. Main thread only.
class LogSheetWindow {
public:
    /// `dismissed` is called when the user dismisses the sheet by the system's own means.
    LogSheetWindow(LogSheet sheet, NSWindow* parent, std::function<void()> dismissed);
    LogSheetWindow(const LogSheetWindow&) = delete;
    LogSheetWindow& operator=(const LogSheetWindow&) = delete;
    ~LogSheetWindow();

private:
    /// Returns the header's height.
    double addHeader();
    void addContent(double top);
    void refresh();

    struct HeaderButton {
        PushButton content;
        ObjcPtr<NSButton> button;
        std::unique_ptr<ControlAction> action;
    };

    LogSheet sheet_;
    ObjcPtr<NSWindow> parent_;
    ObjcPtr<SNVSheetPanel> panel_;
    ObjcPtr<SNVFlippedView> content_;
    std::vector<HeaderButton> buttons_;
    ObjcPtr<NSTextField> emptyText_;
    std::unique_ptr<LogRowList> rows_;
    Subscription changes_;
};

}  // namespace sonvara
