#include "platform/linux/tray/HostMenuItems.h"

#include <QApplication>
#include <QFontMetrics>

namespace sonvara {

namespace {

constexpr int widestLine = 480;  // pixels, in the font of our menus: hosts tell nothing of theirs
constexpr qsizetype mostLines = 10;
constexpr int lineIdStep = 1 << 24;  // the items' own ids never come that far

QString textOf(const MenuItem& item)
{
    return QString::fromStdString(item.attributedTitle ? item.attributedTitle->text : item.title);
}

QStringList cutLines(const QString& text)
{
    const QFontMetrics metrics(QApplication::font("QMenu"));
    auto lines = text.split(QLatin1Char('\n'));
    if (lines.size() > mostLines) {
        lines.resize(mostLines);
        lines.last() = QStringLiteral("…");
    }
    for (auto& line : lines) line = metrics.elidedText(line, Qt::ElideMiddle, widestLine);
    return lines;
}

/// A line that begins from right to left would turn the whole item around: its side, its check mark.
QString keptInDirection(const QString& line)
{
    const bool turns = line.isRightToLeft() && !QGuiApplication::isRightToLeft();
    return turns ? QChar(0x200E) + line : line;  // a left-to-right mark, which is not seen
}

QStringList hostLines(const MenuItem& item, bool growsItems)
{
    auto lines = cutLines(textOf(item));
    for (auto& line : lines) line = dbusMenuLabel(keptInDirection(line));
    const bool isText = !item.action;
    return isText && !growsItems ? lines : QStringList(lines.join(QLatin1Char('\n')));
}

QVariantMap properties(const MenuItem& item, const QString& label)
{
    QVariantMap properties;
    properties[QStringLiteral("label")] = label;
    properties[QStringLiteral("enabled")] = item.isEnabled;
    properties[QStringLiteral("visible")] = true;
    if (item.isChecked) {
        properties[QStringLiteral("toggle-type")] = QStringLiteral("checkmark");
        properties[QStringLiteral("toggle-state")] = *item.isChecked ? 1 : 0;
    }
    return properties;
}

}  // namespace

QString dbusMenuLabel(const QString& title)
{
    // A single underscore would mark the next character as the access key and vanish.
    return QString(title).replace(QLatin1Char('_'), QLatin1String("__"));
}

DBusMenuPropertiesList hostItems(const QtStatusMenu& menu, bool growsItems)
{
    DBusMenuPropertiesList items;
    for (const auto& [id, item] : menu.entries()) {
        if (item.isSeparator) {
            items.append({id, {{QStringLiteral("type"), QStringLiteral("separator")}}});
            continue;
        }
        int lineId = id;
        for (const auto& line : hostLines(item, growsItems)) {
            items.append({lineId, properties(item, line)});
            lineId += lineIdStep;
        }
    }
    return items;
}

QString cutTexts(const QtStatusMenu& menu)
{
    QStringList texts;
    for (const auto& entry : menu.entries()) {
        const auto text = textOf(entry.item);
        if (cutLines(text).join(QLatin1Char('\n')) != text) texts.append(text);
    }
    return texts.join(QLatin1Char('\n'));
}

}  // namespace sonvara
