#include "platform/linux/tray/TrayMenuView.h"

#include "platform/linux/style/Mnemonics.h"
#include "platform/linux/style/StyledLabel.h"

#include <QStyle>
#include <QTextBoundaryFinder>
#include <QWidgetAction>

namespace sonvara {

namespace {

constexpr int longestLine = 480;  // pixels; a longer title is wrapped, so that the menu fits on any screen

StyledText shownText(const MenuItem& item)
{
    if (item.attributedTitle) return *item.attributedTitle;
    return {item.title, FontRole::body, item.isEnabled ? ColorRole::label : ColorRole::secondaryLabel};
}

/// `text` with permission to break words that are too long for a line.
QString breakable(const QString& text)
{
    constexpr int longestWord = 24;
    QString result;
    int length = 0;
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
    for (auto begin = qsizetype{0}; begin < text.size(); begin = characters.position()) {
        characters.toNextBoundary();
        length = text[begin].isSpace() ? 0 : length + 1;
        if (length > longestWord) {
            result.append(QChar(0x200B));  // a space without width
            length = 1;
        }
        result.append(QStringView(text).mid(begin, characters.position() - begin));
    }
    return result;
}

/// A text that is no choice. An item of a native menu could show neither its line breaks nor its style.
QWidget* makeLabel(const StyledText& text, const QMenu& menu)
{
    auto* label = new StyledLabel(text);
    // The same inset as that of the style's own items: the indicator's column and the text's margin.
    const int inset = menu.style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, &menu) + 12;
    label->setContentsMargins(inset, 3, inset, 3);
    const auto width = label->fontMetrics().size(0, QString::fromStdString(text.text)).width();
    if (width > longestLine) {
        label->setWordWrap(true);
        label->setText(breakable(QString::fromStdString(text.text)));
        label->setFixedWidth(longestLine);
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
    if (!item.action && !item.isSeparator) {
        auto* action = new QWidgetAction(&widget_);
        action->setDefaultWidget(makeLabel(shownText(item), widget_));
        action->setText(QString::fromStdString(shownText(item).text));
        action->setEnabled(false);
        return action;
    }
    auto* action = new QAction(&widget_);
    action->setSeparator(item.isSeparator);
    action->setText(withoutMnemonic(QString::fromStdString(shownText(item).text)));
    action->setEnabled(item.isEnabled);
    action->setCheckable(item.isChecked.has_value());
    action->setChecked(item.isChecked.value_or(false));
    connect(action, &QAction::triggered, &menu_, [menu = &menu_, id = entry.id] { menu->choose(id); });
    return action;
}

}  // namespace sonvara
