#include "platform/linux/system/IniFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QVariant>

#include <chrono>
#include <sys/stat.h>
#include <utility>

namespace sonvara {

namespace {

using namespace std::chrono_literals;

// Editors that do not replace the file at once leave it empty for a moment.
constexpr auto settlingTime = 50ms;

}  // namespace

IniFile::IniFile(const QString& path) : beforeReading_(stateOf(path)), settings_(path, QSettings::IniFormat)
{
    QDir().mkpath(QFileInfo(path).path());
    readUntilUnchanged();
    settling_.setSingleShot(true);
    settling_.setInterval(settlingTime);
    connect(&settling_, &QTimer::timeout, this, [this] {
        readAgain();
        readUntilUnchanged();
        watch();
        Q_EMIT changed();
    });
    const auto look = [this] { settling_.start(); };
    connect(&watcher_, &QFileSystemWatcher::fileChanged, this, look);
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, look);
    watch();
}

// A file loses its watch when it is replaced, hence the folders; a link is replaced at its target.
void IniFile::watch()
{
    const QFileInfo file(settings_.fileName());
    QStringList paths{file.path(), file.filePath()};
    if (file.isSymLink()) paths << QFileInfo(file.canonicalFilePath()).path();
    for (const auto& path : std::as_const(paths))
        if (QFileInfo::exists(path)) watcher_.addPath(path);
}

IniFile::State IniFile::stateOf(const QString& path)
{
    struct stat status{};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0) return {};
    const auto changed =
        std::chrono::seconds(status.st_ctim.tv_sec) + std::chrono::nanoseconds(status.st_ctim.tv_nsec);
    return {status.st_dev, status.st_ino, status.st_size, changed.count()};
}

void IniFile::readAgain()
{
    beforeReading_ = stateOf(settings_.fileName());
    settings_.sync();
}

// QSettings opens the file first and notes its size and time then. If the file is replaced in between, it
// has the old content and takes the new one for read; the next write would then drop the other's change.
void IniFile::readUntilUnchanged()
{
    while (stateOf(settings_.fileName()) != beforeReading_) {
        touch();
        readAgain();
    }
}

// Has the file look changed to QSettings, which compares its size and its time in milliseconds.
void IniFile::touch()
{
    constexpr auto modified = QFileDevice::FileModificationTime;
    QFile file(settings_.fileName());
    if (file.open(QIODevice::ReadOnly)) file.setFileTime(file.fileTime(modified).addMSecs(1), modified);
}

IniFile::Values IniFile::values() const
{
    Values values;
    for (const auto& key : settings_.allKeys()) {
        if (key.isEmpty()) continue;  // a damaged file may hold one, and nobody can ask for it
        const auto value = settings_.value(key);
        if (!value.isValid()) continue;
        auto& entry = values[key.toStdString()];
        if (value.typeId() != QMetaType::QStringList && value.canConvert<QString>())
            entry = value.toString().toStdString();
    }
    return values;
}

bool IniFile::add(const std::map<std::string, std::string>& values)
{
    touch();  // the change of another process may have the size and the time of our last one
    for (const auto& [key, value] : values)
        settings_.setValue(QString::fromStdString(key), QString::fromStdString(value));
    settings_.sync();
    return settings_.status() != QSettings::AccessError;
}

}  // namespace sonvara
