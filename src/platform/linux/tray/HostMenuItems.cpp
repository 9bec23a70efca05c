#include "platform/linux/tray/HostMenuItems.h"

#include "support/Text.h"

#include <QGuiApplication>

#include <cstddef>
#include <string>

namespace sonvara {

namespace {

// About 480 pixels in the usual font. Hosts tell nothing of theirs, and to measure by ours would load it, which nothing else
// does before a window is shown.
constexpr std::size_t widestLine = 64;  // columns
constexpr std::size_t mostLines = 10;
constexpr int lineIdStep = 1 << 24;  // the items' own ids never come that far

const std::string& textOf(const MenuItem& item)
{
    return item.attributedTitle ? item.attributedTitle->text : item.title;
}

QStringList cutLines(const std::string& text)
{
    auto lines = text::split(text, "\n");
    if (lines.size() > mostLines) {
        lines.resize(mostLines);
        lines.back() = "…";
    }
    QStringList cut;
    for (const auto line : lines) cut.append(QString::fromStdString(text::cutInTheMiddle(line, widestLine)));
    return cut;
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

QString cutTexts(const QtStatusMenu& menu, bool wrapsToolTip)
{
    QStringList lines;
    for (const auto& entry : menu.entries()) {
        const auto& text = textOf(entry.item);
        if (cutLines(text).join(QLatin1Char('\n')) == QString::fromStdString(text)) continue;
        for (const auto line : text::split(text, "\n"))
            lines.append(
                QString::fromStdString(wrapsToolTip ? std::string(line) : text::wrap(line, widestLine)));
    }
    return lines.join(QLatin1Char('\n'));
}

}  // namespace sonvara
