#include "platform/linux/windows/SectionCard.h"

#include "platform/linux/style/StylePalette.h"

#include <QPainter>

namespace sonvara {

namespace {

constexpr int inset = 10;
constexpr int rowGap = 8;  // the line runs in its middle
constexpr double cornerRadius = 7;

}  // namespace

SectionCard::SectionCard(QWidget* parent) : QWidget(parent), layout_(new QVBoxLayout(this))
{
    layout_->setContentsMargins(inset, rowGap / 2, inset, rowGap / 2);
    layout_->setSpacing(rowGap);
}

void SectionCard::paintEvent(QPaintEvent*)
{
    const auto window = palette().color(QPalette::Window);
    const auto text = palette().color(QPalette::WindowText);
    const bool dark = window.lightnessF() < text.lightnessF();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(mixed(text, window, 0.16));
    painter.setBrush(dark ? mixed(text, window, 0.05) : mixed(palette().color(QPalette::Base), window, 0.7));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius, cornerRadius);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(mixed(text, window, 0.10));
    for (int i = 1; i < layout_->count(); ++i) {
        const int y =
            (layout_->itemAt(i - 1)->geometry().bottom() + layout_->itemAt(i)->geometry().top()) / 2;
        painter.drawLine(inset, y, width() - inset, y);
    }
}

}  // namespace sonvara
