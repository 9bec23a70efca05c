// The rows of a form as controls. For Objective-C++ sources only.
#pragma once

#include "ports/Form.h"

#import <AppKit/AppKit.h>

#include <memory>

namespace sonvara {

/// One row. Main thread only.
class FormRowView {
public:
    virtual ~FormRowView() = default;

    /// Shows what the row's bindings say now.
    virtual void refresh() = 0;

    [[nodiscard]] double height() const { return height_; }

protected:
    explicit FormRowView(double height) : height_(height) {}

private:
    double height_;
};

/// Where a row goes: into a flipped view, with its upper left corner at (x, y).
struct RowPlace {
    NSView* parent;
    double x;
    double y;
    double width;
};

/// Makes the controls of `row`. A control reads its binding back after each change by the user, since
/// the binding may have refused the new value.
[[nodiscard]] std::unique_ptr<FormRowView> makeRow(const FormRow& row, const RowPlace& place);

}  // namespace sonvara
