#include "platform/linux/desktop/StyledLabel.h"

#include "platform/linux/desktop/StylePalette.h"

#include <QApplication>
#include <QEvent>

namespace sonvara {

StyledLabel::StyledLabel(const StyledText& text, QWidget* parent)
    : QLabel(parent),
      font_(text.font),
      color_(text.color)
{
    setTextFormat(Qt::PlainText);
    setText(toQt(text.text));
    applyRoles();
}

bool StyledLabel::event(QEvent* event)
{
    const bool handled = QLabel::event(event);
    switch (event->type()) {
    case QEvent::ApplicationFontChange:
    case QEvent::ApplicationPaletteChange:
    case QEvent::PaletteChange:
    case QEvent::ParentChange:
    case QEvent::StyleChange: applyRoles(); break;
    default: break;
    }
    return handled;
}

// Sets only what differs: setting a palette raises the very event that leads here.
void StyledLabel::applyRoles()
{
    const auto wanted = roleFont(font_);
    if (font() != wanted) setFont(wanted);
    const auto surroundings = parentWidget() != nullptr ? parentWidget()->palette() : QApplication::palette();
    const auto color = RoleColors::of(surroundings)[color_];
    auto colors = palette();
    if (colors.color(QPalette::Active, QPalette::WindowText) == color) return;
    colors.setColor(QPalette::WindowText, color);
    setPalette(colors);
}

}  // namespace sonvara
