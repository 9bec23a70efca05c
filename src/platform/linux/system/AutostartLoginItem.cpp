#include "platform/linux/system/AutostartLoginItem.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QSaveFile>
#include <QStandardPaths>

namespace sonvara {

namespace {

std::string problem(const QString& path, const QString& reason)
{
    return (path + QLatin1String(": ") + reason).toStdString();
}

/// An absolute path, or a name to be found in PATH, of a program that can be started.
bool canStart(const QString& program)
{
    if (program.isEmpty()) return false;
    const QFileInfo file(program);
    if (file.isAbsolute()) return file.isFile() && file.isExecutable();
    return !QStandardPaths::findExecutable(program).isEmpty();
}

}  // namespace

AutostartLoginItem::AutostartLoginItem(AutostartEntry entry, const QString& identifier, const QString& folder)
    : entry_(std::move(entry)),
      folder_(folder),
      path_(folder + QLatin1Char('/') + identifier + QLatin1String(".desktop"))
{}

AutostartEntry AutostartLoginItem::thisProgram()
{
    return {QGuiApplication::applicationDisplayName(), QCoreApplication::applicationFilePath()};
}

QString AutostartLoginItem::userFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QLatin1String("/autostart");
}

LoginItemStatus AutostartLoginItem::status() const
{
    QFile file(path_);
    if (!file.open(QIODevice::ReadOnly)) return LoginItemStatus::notRegistered;
    const auto state = readAutostart(file.readAll());
    if (state.isOff) return LoginItemStatus::notRegistered;
    return canStart(state.program) ? LoginItemStatus::enabled : LoginItemStatus::notFound;
}

std::optional<std::string> AutostartLoginItem::registerItem()
{
    if (!QDir().mkpath(folder_)) return problem(folder_, QStringLiteral("cannot be created"));
    QSaveFile file(path_);
    if (!file.open(QIODevice::WriteOnly)) return problem(path_, file.errorString());
    file.write(autostartText(entry_));
    if (!file.commit()) return problem(path_, file.errorString());
    return std::nullopt;
}

std::optional<std::string> AutostartLoginItem::unregisterItem()
{
    QFile file(path_);
    if (file.remove() || !file.exists()) return std::nullopt;
    return problem(path_, file.errorString());
}

}  // namespace sonvara
