#include "platform/linux/system/AutostartEntry.h"

#include <QHash>
#include <QList>

#include <algorithm>

namespace sonvara {

namespace {

/// A value of the type "string": some characters are written as escapes.
QString escaped(QString value)
{
    value.replace(QLatin1String("\\"), QLatin1String("\\\\"));
    value.replace(QLatin1String("\n"), QLatin1String("\\n"));
    value.replace(QLatin1String("\r"), QLatin1String("\\r"));
    value.replace(QLatin1String("\t"), QLatin1String("\\t"));
    if (value.startsWith(QLatin1Char(' '))) value.replace(0, 1, QLatin1String("\\s"));
    return value;
}

QString unescaped(const QString& value)
{
    static const QHash<QChar, QChar> meanings{
        {u's', u' '}, {u'n', u'\n'}, {u't', u'\t'}, {u'r', u'\r'}, {u'\\', u'\\'}};
    QString result;
    for (qsizetype i = 0; i < value.size(); ++i) {
        const bool isEscape = value[i] == u'\\' && i + 1 < value.size() && meanings.contains(value[i + 1]);
        result.append(isEscape ? meanings[value[++i]] : value[i]);
    }
    return result;
}

/// One argument of a command line: quoted when it holds a reserved character, and without field codes.
QString quoted(QString argument)
{
    argument.replace(QLatin1String("%"), QLatin1String("%%"));
    const QString reserved = QStringLiteral(" \t\n\"'\\><~|&;$*?#()`");
    const bool needsQuotes = std::ranges::any_of(argument, [&](QChar c) { return reserved.contains(c); });
    if (!needsQuotes) return argument;
    QString result(QLatin1Char('"'));
    for (const auto c : std::as_const(argument)) {
        if (QStringLiteral("\"`$\\").contains(c)) result.append(QLatin1Char('\\'));
        result.append(c);
    }
    return result + QLatin1Char('"');
}

/// The first argument of a command line, as the format of desktop entries reads it.
QString firstArgument(const QString& command)
{
    QString result;
    bool inQuotes = false;
    for (qsizetype i = 0; i < command.size(); ++i) {
        const auto c = command[i];
        if (c == u'"') {
            inQuotes = !inQuotes;
        } else if (c == u'\\' && inQuotes && i + 1 < command.size()) {
            result.append(command[++i]);
        } else if (c == u' ' && !inQuotes) {
            if (!result.isEmpty()) break;
        } else {
            result.append(c);
        }
    }
    return result.replace(QLatin1String("%%"), QLatin1String("%"));
}

}  // namespace

QByteArray autostartText(const AutostartEntry& entry)
{
    const auto text =
        QStringLiteral(
            "[Desktop Entry]\nType=Application\nName=%1\nExec=%2\nTryExec=%3\nIcon=%4\nTerminal=false\n")
            .arg(escaped(entry.name), escaped(quoted(entry.program)), escaped(entry.program),
                 escaped(entry.icon));
    return text.toUtf8();
}

AutostartState readAutostart(const QByteArray& text)
{
    AutostartState state;
    bool inGroup = false;
    for (const auto& line : QString::fromUtf8(text).split(QLatin1Char('\n'))) {
        const auto trimmed = line.trimmed();
        if (trimmed.startsWith(QLatin1Char('['))) inGroup = trimmed == QLatin1String("[Desktop Entry]");
        const auto split = trimmed.indexOf(QLatin1Char('='));
        if (!inGroup || split < 0 || trimmed.startsWith(QLatin1Char('#'))) continue;
        const auto key = trimmed.left(split).trimmed();
        const auto value = trimmed.mid(split + 1).trimmed();
        if (key == QLatin1String("Hidden")) state.isOff |= value == QLatin1String("true");
        if (key == QLatin1String("X-GNOME-Autostart-enabled")) state.isOff |= value == QLatin1String("false");
        if (key == QLatin1String("Exec")) state.program = firstArgument(unescaped(value));
    }
    return state;
}

}  // namespace sonvara
