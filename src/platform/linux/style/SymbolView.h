// A symbol beside a text.
#pragma once

#include "ports/Style.h"

#include <QWidget>

namespace sonvara {

/// Paints a symbol as high as a line of `font`, in the theme's colour for `color`.
class SymbolView final : public QWidget {
    Q_OBJECT

public:
    SymbolView(Symbol symbol, FontRole font, ColorRole color, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Symbol symbol_;
    FontRole font_;
    ColorRole color_;
};

}  // namespace sonvara
