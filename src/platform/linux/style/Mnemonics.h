// Access keys for titles that come without any.
#pragma once

#include <QChar>
#include <QString>

namespace sonvara {

/// `title` so that a widget shows exactly it: no character marks an access key.
[[nodiscard]] QString withoutMnemonic(const QString& title);

/// The same, with the first `key` in it, in either case, as the access key; a null `key` marks none.
[[nodiscard]] QString withMnemonic(const QString& title, QChar key);

/// Hands out the access keys of one window, each once: the first letters of words before others.
class Mnemonics {
public:
    /// A key in `title` that nobody in the window has yet; null when there is none.
    [[nodiscard]] QChar pick(const QString& title);

private:
    [[nodiscard]] bool take(QChar letter);

    QString taken_;
};

}  // namespace sonvara
