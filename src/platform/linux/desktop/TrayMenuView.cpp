#include "platform/linux/desktop/TrayMenuView.h"

#include "platform/linux/desktop/Mnemonics.h"
#include "platform/linux/desktop/StylePalette.h"
#include "platform/linux/desktop/StyledLabel.h"

#include <QStyle>
#include <QWidgetAction>

#include <algorithm>

namespace sonvara {

namespace {

constexpr int longestLine = 480;  // pixels; a longer title is wrapped, so that the menu fits on any screen

StyledText shownText(const MenuItem& item)
{
    if (item.attributedTitle) return *item.attributedTitle;
    return {item.title, FontRole::body, item.isEnabled ? ColorRole::label : ColorRole::secondaryLabel};
}

/// A plain menu item has one line; what needs more is shown by a label of its own.
bool needsLabel(const MenuItem& item, const QMenu& menu)
{
    if (item.action || item.isSeparator) return false;
    if (item.attributedTitle) return true;
    const auto title = toQt(item.title);
    return title.contains(QLatin1Char('\n')) || menu.fontMetrics().horizontalAdvance(title) > longestLine;
}

QWidget* makeLabel(const StyledText& text, const QMenu& menu)
{
    auto* label = new StyledLabel(text);
    // The same inset as that of the style's own items: the indicator's column and the text's margin.
    const int inset = menu.style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, &menu) + 10;
    label->setContentsMargins(inset, 3, inset, 3);
    const auto width = label->fontMetrics().size(0, toQt(text.text)).width();
    if (width > longestLine) {
        label->setWordWrap(true);
        label->setMinimumWidth(longestLine);
        label->setMaximumWidth(longestLine);
    }
    return label;
}

}  // namespace

TrayMenuView::TrayMenuView(QtStatusMenu& menu) : menu_(menu)
{
    rebuild();
    connect(&menu_, &QtStatusMenu::itemsChanged, this, &TrayMenuView::rebuild);
    connect(&widget_, &QMenu::aboutToShow, &menu_, &QtStatusMenu::willOpen);
}

void TrayMenuView::popUp(QPoint place)
{
    widget_.popup(place);
}

void TrayMenuView::rebuild()
{
    const auto old = widget_.actions();
    for (auto* action : old) {
        widget_.removeAction(action);
        action->deleteLater();  // it may be the one whose choice replaces the items
    }
    for (const auto& entry : menu_.entries()) widget_.addAction(makeAction(entry));
}

QAction* TrayMenuView::makeAction(const QtStatusMenu::Entry& entry)
{
    const auto& item = entry.item;
    if (needsLabel(item, widget_)) {
        auto* action = new QWidgetAction(&widget_);
        action->setDefaultWidget(makeLabel(shownText(item), widget_));
        action->setText(toQt(shownText(item).text));
        action->setEnabled(false);
        return action;
    }
    auto* action = new QAction(&widget_);
    action->setSeparator(item.isSeparator);
    action->setText(withoutMnemonic(toQt(shownText(item).text)));
    action->setEnabled(item.isEnabled);
    action->setCheckable(item.isChecked);
    action->setChecked(item.isChecked);
    connect(action, &QAction::triggered, &menu_, [menu = &menu_, id = entry.id] { menu->choose(id); });
    return action;
}

}  // namespace sonvara
