// What a user would see of Qt's windows, and do with them.
#include "windows/Probe.h"

#include "helpers/EventLoop.h"
#include "platform/linux/style/StylePalette.h"
#include "platform/linux/windows/FormComboBox.h"
#include "platform/linux/windows/LogDialog.h"
#include "platform/linux/windows/LogListView.h"
#include "platform/linux/windows/LogMessageView.h"
#include "platform/linux/windows/LogModel.h"
#include "platform/linux/windows/QtWindows.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QScrollBar>
#include <QTest>
#include <QTextDocument>

#include <algorithm>
#include <string_view>

namespace sonvara::test::probe {

namespace {

constexpr std::string_view sheetMark = "/sheet";

QWidgetList visibleWindows()
{
    auto windows = QApplication::topLevelWidgets();
    windows.removeIf([](const QWidget* widget) { return !widget->isVisible(); });
    return windows;
}

LogDialog* sheetOf(const QWidget& window)
{
    const auto sheets = window.findChildren<LogDialog*>();
    const auto shown = std::ranges::find_if(sheets, [](const auto* sheet) { return sheet->isVisible(); });
    return shown == sheets.end() ? nullptr : *shown;
}

QWidget* windowAt(const std::string& place)
{
    const bool isSheet = place.ends_with(sheetMark);
    const auto title = isSheet ? place.substr(0, place.size() - sheetMark.size()) : place;
    for (auto* window : visibleWindows()) {
        if (window->windowTitle().toStdString() != title) continue;
        return isSheet ? sheetOf(*window) : window;
    }
    return nullptr;
}

/// What a widget shows as text that is no control's title.
std::optional<std::string> textOf(const QWidget& widget)
{
    const auto* label = qobject_cast<const QLabel*>(&widget);
    if (label == nullptr) return std::nullopt;
    // One with a buddy marks the key that leads there.
    const auto text = label->text();
    return (label->buddy() == nullptr ? text : QString(text).remove('&')).toStdString();
}

template <typename T>
std::vector<T*> visible(const std::string& place)
{
    std::vector<T*> found;
    const auto* window = windowAt(place);
    if (window == nullptr) return found;
    std::ranges::copy_if(window->findChildren<T*>(), std::back_inserter(found),
                         [window](const T* widget) { return widget->isVisibleTo(window); });
    return found;
}

QWidget* widgetWith(const std::string& place, const std::string& text)
{
    runEvents();  // its place and size
    const auto widgets = visible<QWidget>(place);
    const auto found =
        std::ranges::find_if(widgets, [&text](const auto* each) { return textOf(*each) == text; });
    return found == widgets.end() ? nullptr : *found;
}

QAbstractButton* buttonWith(const std::string& place, const std::string& title)
{
    const auto buttons = visible<QAbstractButton>(place);
    const auto found = std::ranges::find_if(
        buttons, [&title](const auto* each) { return each->accessibleName().toStdString() == title; });
    return found == buttons.end() ? nullptr : *found;
}

LogListView* logIn(const std::string& place)
{
    runEvents();  // its rows' places
    const auto lists = visible<LogListView>(place);
    return lists.empty() ? nullptr : lists.front();
}

/// The first row of a log with this time or message.
QModelIndex rowWith(const LogListView& list, const std::string& text)
{
    for (int i = 0; i < list.rows().rowCount(); ++i) {
        const auto index = list.rows().index(i);
        const auto& row = list.rows().row(index);
        if (row.message.text == text || row.time.text == text) return index;
    }
    return {};
}

bool isRowWhole(const LogListView& list, const QModelIndex& index)
{
    const auto& row = list.rows().row(index);
    const auto place = list.parts(index);
    QTextDocument message;
    setUpMessage(message, row.message);
    message.setTextWidth(place.message.width());
    const QFontMetrics time(roleFont(row.time.font));
    return place.message.height() >= message.size().height() &&
           place.message.right() < list.viewport()->width() &&
           place.time.width() >= time.horizontalAdvance(QString::fromStdString(row.time.text)) &&
           place.time.height() >= time.height() && place.time.right() < place.symbol.left() &&
           place.symbol.right() < place.message.left();
}

}  // namespace

std::unique_ptr<Windows> makeWindows()
{
    return std::make_unique<QtWindows>();
}

bool runUntil(const std::function<bool()>& condition)
{
    return eventually([&condition] {
        runEvents();
        return condition();
    });
}

bool isShown(const std::string& place)
{
    return windowAt(place) != nullptr;
}

int countWindows(const std::string& title)
{
    return static_cast<int>(std::ranges::count_if(visibleWindows(), [&title](const auto* window) {
        return window->windowTitle().toStdString() == title;
    }));
}

bool isAnySheetShown()
{
    return std::ranges::any_of(visibleWindows(), [](const auto* window) {
        return qobject_cast<const LogDialog*>(window) != nullptr;
    });
}

Size contentSize(const std::string& place)
{
    runEvents();
    const auto size = windowAt(place)->size();
    return {static_cast<double>(size.width()), static_cast<double>(size.height())};
}

void pressCloseButton(const std::string& title)
{
    windowAt(title)->close();
}

void miniaturize(const std::string& title)
{
    windowAt(title)->showMinimized();
}

void pressEscape(const std::string& place)
{
    QTest::keyClick(windowAt(place), Qt::Key_Escape);
}

std::vector<std::string> texts(const std::string& place)
{
    std::vector<std::string> found;
    for (const auto* widget : visible<QWidget>(place)) {
        if (auto text = textOf(*widget)) found.push_back(std::move(*text));
        const auto* list = qobject_cast<const LogListView*>(widget);
        for (int i = 0; list != nullptr && i < list->rows().rowCount(); ++i) {
            const auto& row = list->rows().row(list->rows().index(i));
            found.insert(found.end(), {row.time.text, row.message.text});
        }
    }
    return found;
}

bool hasText(const std::string& place, const std::string& text)
{
    const auto* list = logIn(place);
    return (list != nullptr && rowWith(*list, text).isValid()) || widgetWith(place, text) != nullptr;
}

bool isWhole(const std::string& place, const std::string& text)
{
    if (const auto* list = logIn(place)) {
        const auto row = rowWith(*list, text);
        if (row.isValid()) return isRowWhole(*list, row);
    }
    const auto* widget = widgetWith(place, text);
    if (widget == nullptr) return false;
    if (widget->hasHeightForWidth()) return widget->heightForWidth(widget->width()) <= widget->height();
    return widget->sizeHint().width() <= widget->width() && widget->sizeHint().height() <= widget->height();
}

double placeInSight(const std::string& place, const std::string& text)
{
    const auto* list = logIn(place);
    return list->parts(rowWith(*list, text)).message.top();
}

bool isSelectable(const std::string& place, const std::string& text)
{
    const auto* list = logIn(place);
    const auto message = list->parts(rowWith(*list, text)).message;
    QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, message.topLeft() + QPoint(4, 4));
    const auto* opened = list->findChild<LogMessageView*>();
    return opened != nullptr && opened->textCursor().hasSelection() &&
           text.starts_with(opened->textCursor().selectedText().toStdString());
}

std::optional<ButtonState> button(const std::string& place, const std::string& title)
{
    const auto* found = buttonWith(place, title);
    if (found == nullptr) return std::nullopt;
    return ButtonState{found->isEnabled(), found->isChecked()};
}

void press(const std::string& place, const std::string& title)
{
    runEvents();
    auto* found = buttonWith(place, title);
    QTest::mouseClick(found, Qt::LeftButton, {}, QPoint(8, found->height() / 2));
}

PopUpState popUp(const std::string& place)
{
    const auto* box = visible<FormComboBox>(place).front();
    PopUpState state{{}, box->currentIndex(), box->isEnabled()};
    for (int i = 0; i < box->count(); ++i) state.options.push_back(box->itemText(i).toStdString());
    return state;
}

void choose(const std::string& place, int option)
{
    auto* box = visible<FormComboBox>(place).front();
    for (int steps = option - box->currentIndex(); steps != 0; steps += steps < 0 ? 1 : -1)
        QTest::keyClick(box, steps < 0 ? Qt::Key_Up : Qt::Key_Down);
}

void scrollToEnd(const std::string& place)
{
    auto* bar = logIn(place)->verticalScrollBar();
    bar->setValue(bar->maximum());
}

}  // namespace sonvara::test::probe
