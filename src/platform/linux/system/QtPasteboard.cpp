#include "platform/linux/system/QtPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace sonvara {

void QtPasteboard::clearContents()
{
    QGuiApplication::clipboard()->clear();
}

void QtPasteboard::setString(const std::string& text)
{
    QGuiApplication::clipboard()->setText(QString::fromStdString(text));
}

}  // namespace sonvara
