// A form as a view of the system. For Objective-C++ sources only.
#pragma once

#import "platform/macos/system/ObjcPtr.h"
#import "platform/macos/windows/FormRows.h"
#import "platform/macos/windows/LogSheetWindow.h"
#include "ports/Form.h"

#import <AppKit/AppKit.h>

#include <memory>
#include <vector>

namespace sonvara {

/// Draws `form` in a scrolling view of the form's size and presents its sheet. Main thread only.
class FormView {
public:
    /// `window` is where the sheet goes; it must outlive this object.
    FormView(std::shared_ptr<const Form> form, NSWindow* window);

    [[nodiscard]] NSView* view() const { return scroll_.get(); }

    /// To be called each time the form comes on screen.
    void appear();

private:
    /// Makes all rows anew; returns the height that they take.
    double layOut(double width);
    /// Returns where the next section begins.
    double addSection(const FormSection& section, const RowPlace& place);
    /// Returns the height of the section's box.
    double addRows(const FormSection& section, NSView* box);
    void refresh();
    void refreshSheet();

    std::shared_ptr<const Form> form_;
    NSWindow* window_;
    ObjcPtr<SNVFlippedView> content_;
    ObjcPtr<NSScrollView> scroll_;
    std::vector<std::unique_ptr<FormRowView>> rows_;
    std::unique_ptr<LogSheetWindow> sheet_;
    Subscription changes_;
};

}  // namespace sonvara
