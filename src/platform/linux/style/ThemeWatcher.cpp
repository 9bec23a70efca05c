#include "platform/linux/style/ThemeWatcher.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>

namespace sonvara {

ThemeWatcher& ThemeWatcher::instance()
{
    static QPointer<ThemeWatcher> watcher;
    if (!watcher) watcher = new ThemeWatcher(QCoreApplication::instance());
    return *watcher;
}

ThemeWatcher::ThemeWatcher(QObject* application) : QObject(application)
{
    soon_.setSingleShot(true);
    connect(&soon_, &QTimer::timeout, this, &ThemeWatcher::changed);
    application->installEventFilter(this);  // sees the events of all objects
}

bool ThemeWatcher::eventFilter(QObject*, QEvent* event)
{
    const auto type = event->type();
    if (type == QEvent::ApplicationFontChange || type == QEvent::ApplicationPaletteChange) soon_.start(0);
    return false;
}

}  // namespace sonvara
