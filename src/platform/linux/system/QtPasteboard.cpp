#include "platform/linux/desktop/QtPasteboard.h"

#include "platform/linux/desktop/QtText.h"

#include <QClipboard>
#include <QGuiApplication>

namespace sonvara {

void QtPasteboard::clearContents()
{
    QGuiApplication::clipboard()->clear();
}

void QtPasteboard::setString(const std::string& text)
{
    QGuiApplication::clipboard()->setText(toQt(text));
}

}  // namespace sonvara
