#include "platform/linux/style/StyledLabel.h"

#include "platform/linux/style/StylePalette.h"
#include "platform/linux/style/ThemeWatcher.h"

#include <QApplication>
#include <QEvent>

namespace sonvara {

StyledLabel::StyledLabel(const StyledText& text, QWidget* parent)
    : QLabel(parent),
      font_(text.font),
      color_(text.color)
{
    setTextFormat(Qt::PlainText);
    setText(QString::fromStdString(text.text));
    applyRoles();
    connect(&ThemeWatcher::instance(), &ThemeWatcher::changed, this, &StyledLabel::applyRoles);
}

bool StyledLabel::event(QEvent* event)
{
    const bool handled = QLabel::event(event);
    if (event->type() == QEvent::ParentChange) applyRoles();
    return handled;
}

void StyledLabel::applyRoles()
{
    setFont(roleFont(font_));
    const auto surroundings = parentWidget() != nullptr ? parentWidget()->palette() : QApplication::palette();
    const auto color = RoleColors::of(surroundings)[color_];
    auto colors = palette();
    colors.setColor(QPalette::WindowText, color);
    setPalette(colors);
}

}  // namespace sonvara
