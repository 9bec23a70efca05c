// The rows of a log in a scrolling view. For Objective-C++ sources only.
#pragma once

#import "platform/macos/windows/ActionTarget.h"
#import "platform/macos/windows/Layout.h"
#include "ports/Form.h"

#import <AppKit/AppKit.h>

#include <optional>
#include <string>
#include <vector>

namespace sonvara {

/// Makes a row's views when it first scrolls into sight, and keeps them as long as the row is there, so
/// that a selection in it survives. Main thread only.
class LogRowList {
public:
    /// Takes the spacings from `sheet`.
    LogRowList(const LogSheet& sheet, NSRect frame);
    LogRowList(const LogRowList&) = delete;
    LogRowList& operator=(const LogRowList&) = delete;
    ~LogRowList();

    [[nodiscard]] NSView* view() const { return scroll_.get(); }

    /// Shows `rows` from top to bottom. A row that was shown before stays as it was, and a reader who has
    /// scrolled keeps their place.
    void show(std::vector<LogRow> rows);

private:
    struct Entry {
        LogRow row;
        double top = 0;
        double height = 0;
        ObjcPtr<SNVFlippedView> view;  // none until it is in sight
    };

    struct Place {
        std::string id;     // of the first row in sight
        double offset = 0;  // of its top to the upper edge; negative when it is cut
    };

    [[nodiscard]] std::optional<Place> readersPlace() const;
    void restore(const Place& place);
    void update(std::vector<LogRow> rows);
    [[nodiscard]] Entry takeOrMake(LogRow row);
    [[nodiscard]] double messageLeft(const LogRow& row) const;
    void placeAll();
    void fillVisible();
    [[nodiscard]] ObjcPtr<SNVFlippedView> makeView(const Entry& entry) const;

    double rowSpacing_;
    double columnSpacing_;
    double width_ = 0;  // of a row
    std::vector<Entry> entries_;
    ObjcPtr<SNVFlippedView> document_;
    ObjcPtr<NSScrollView> scroll_;
    ObjcPtr<SNVActionTarget> scrolled_;
};

}  // namespace sonvara
