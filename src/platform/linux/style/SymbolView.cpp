#include "platform/linux/style/SymbolView.h"

#include "platform/linux/style/StylePalette.h"
#include "platform/linux/style/SymbolIcons.h"

#include <QFontMetrics>

namespace sonvara {

SymbolView::SymbolView(Symbol symbol, FontRole font, ColorRole color, QWidget* parent)
    : QWidget(parent),
      symbol_(std::move(symbol)),
      font_(font),
      color_(color)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAccessibleName(QString::fromStdString(symbol_.accessibilityDescription));
}

QSize SymbolView::sizeHint() const
{
    const int side = QFontMetrics(roleFont(font_)).height();
    return {side, side};
}

void SymbolView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintSymbol(painter, symbol_.name, QRectF(rect()), RoleColors::of(palette())[color_]);
}

}  // namespace sonvara
