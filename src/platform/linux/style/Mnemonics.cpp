#include "platform/linux/style/Mnemonics.h"

namespace sonvara {

QString withoutMnemonic(const QString& title)
{
    return QString(title).replace(QLatin1Char('&'), QLatin1String("&&"));
}

QString withMnemonic(const QString& title, QChar key)
{
    const auto at = key.isNull() ? -1 : title.indexOf(key, 0, Qt::CaseInsensitive);
    if (at < 0) return withoutMnemonic(title);
    return withoutMnemonic(title.left(at)) + QLatin1Char('&') + withoutMnemonic(title.mid(at));
}

QChar Mnemonics::pick(const QString& title)
{
    for (qsizetype i = 0; i < title.size(); ++i) {
        const bool startsWord = i == 0 || !title[i - 1].isLetterOrNumber();
        if (startsWord && take(title[i])) return title[i];
    }
    for (const auto letter : title) {
        if (take(letter)) return letter;
    }
    return {};
}

bool Mnemonics::take(QChar letter)
{
    if (!letter.isLetter() || taken_.contains(letter, Qt::CaseInsensitive)) return false;
    taken_.append(letter);
    return true;
}

}  // namespace sonvara
