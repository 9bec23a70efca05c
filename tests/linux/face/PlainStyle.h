// A style whose controls are mere blocks, so that pictures show what is ours and nothing of Qt's.
#pragma once

#include <QCommonStyle>
#include <QPainter>
#include <QStyleOption>

namespace sonvara::test {

class PlainStyle final : public QCommonStyle {
public:
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override
    {
        if (element == CE_CheckBox || element == CE_PushButton) {
            painter->fillRect(option->rect, option->palette.button());
        } else if (element != CE_ComboBoxLabel) {
            QCommonStyle::drawControl(element, option, painter, widget);
        }
    }
    void drawComplexControl(ComplexControl, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget*) const override
    {
        painter->fillRect(option->rect, option->palette.button());
    }
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override
    {
        if (element == PE_FrameFocusRect) {
            painter->setPen(option->palette.color(QPalette::Highlight));
            painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
        } else {
            QCommonStyle::drawPrimitive(element, option, painter, widget);
        }
    }
    [[nodiscard]] QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                                         const QWidget* widget) const override
    {
        const bool isControl = type == CT_CheckBox || type == CT_ComboBox || type == CT_PushButton;
        return isControl ? QSize(120, 20) : QCommonStyle::sizeFromContents(type, option, contents, widget);
    }
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override
    {
        return hint == SH_UnderlineShortcut ? 0 : QCommonStyle::styleHint(hint, option, widget, data);
    }
};

}  // namespace sonvara::test
