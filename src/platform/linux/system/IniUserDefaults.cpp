#include "platform/linux/system/IniUserDefaults.h"

#include "ports/SystemLog.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QStringList>
#include <QVariant>
#include <chrono>
#include <sys/stat.h>

namespace sonvara {

namespace {

using namespace std::chrono_literals;

// Editors that do not replace the file at once leave it empty for a moment.
constexpr auto settlingTime = 50ms;

bool isTrue(const std::string& value)
{
    return value == "true" || value == "1";
}

}  // namespace

IniUserDefaults::IniUserDefaults(const std::string& path, SystemLog& log)
    : log_(log),
      beforeReading_(stateOf(QString::fromStdString(path))),
      settings_(QString::fromStdString(path), QSettings::IniFormat)
{
    QDir().mkpath(QFileInfo(settings_.fileName()).path());
    readUntilUnchanged();
    values_.store(read());
    settling_.setSingleShot(true);
    settling_.setInterval(settlingTime);
    QObject::connect(&settling_, &QTimer::timeout, &settling_, [this] {
        readAgain();
        readUntilUnchanged();
        refresh();
    });
    const auto look = [this] { settling_.start(); };
    QObject::connect(&watcher_, &QFileSystemWatcher::fileChanged, &settling_, look);
    QObject::connect(&watcher_, &QFileSystemWatcher::directoryChanged, &settling_, look);
    watch();
}

std::string IniUserDefaults::standardPath()
{
    const auto folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return folder.toStdString() + "/sonvara/sonvara.conf";
}

// A file loses its watch when it is replaced, hence the folders; a link is replaced at its target.
void IniUserDefaults::watch()
{
    const QFileInfo file(settings_.fileName());
    QStringList paths{file.path(), file.filePath()};
    if (file.isSymLink()) paths << QFileInfo(file.canonicalFilePath()).path();
    for (const auto& path : std::as_const(paths))
        if (QFileInfo::exists(path)) watcher_.addPath(path);
}

IniUserDefaults::State IniUserDefaults::stateOf(const QString& path)
{
    struct stat status{};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0) return {};
    const auto changed =
        std::chrono::seconds(status.st_ctim.tv_sec) + std::chrono::nanoseconds(status.st_ctim.tv_nsec);
    return {status.st_dev, status.st_ino, status.st_size, changed.count()};
}

void IniUserDefaults::readAgain()
{
    beforeReading_ = stateOf(settings_.fileName());
    settings_.sync();
}

// QSettings opens the file first and notes its size and time then. If the file is replaced in between, it
// has the old content and takes the new one for read; the next write would then drop the other's change.
void IniUserDefaults::readUntilUnchanged()
{
    while (stateOf(settings_.fileName()) != beforeReading_) {
        touch();
        readAgain();
    }
}

// Has the file look changed to QSettings, which compares its size and its time in milliseconds.
void IniUserDefaults::touch()
{
    constexpr auto modified = QFileDevice::FileModificationTime;
    QFile file(settings_.fileName());
    if (file.open(QIODevice::ReadOnly)) file.setFileTime(file.fileTime(modified).addMSecs(1), modified);
}

IniUserDefaults::Values IniUserDefaults::read() const
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

void IniUserDefaults::refresh()
{
    watch();
    auto values = read();
    if (values == *values_.load()) return;
    values_.store(std::move(values));
    changed_.call();
}

void IniUserDefaults::write(const std::string& key, const QVariant& value)
{
    touch();  // the change of another process may have the size and the time of our last one
    settings_.setValue(QString::fromStdString(key), value);
    settings_.sync();
    if (settings_.status() == QSettings::AccessError) reportFailure();
    refresh();
}

void IniUserDefaults::reportFailure()
{
    if (isFailureReported_) return;
    isFailureReported_ = true;
    Logger(log_, "UserDefaults")
        .error({{"The settings cannot be written to "}, {settings_.fileName().toStdString()}});
}

bool IniUserDefaults::hasObject(const std::string& key) const
{
    return values_.load()->contains(key);
}

bool IniUserDefaults::boolForKey(const std::string& key) const
{
    const auto value = stringForKey(key);
    return value && isTrue(*value);
}

std::optional<std::string> IniUserDefaults::stringForKey(const std::string& key) const
{
    const auto values = values_.load();
    const auto entry = values->find(key);
    return entry == values->end() ? std::nullopt : entry->second;
}

void IniUserDefaults::setBool(const std::string& key, bool value)
{
    write(key, value);
}

void IniUserDefaults::setString(const std::string& key, const std::string& value)
{
    write(key, QString::fromStdString(value));
}

Subscription IniUserDefaults::onChange(std::function<void()> changed)
{
    return changed_.add(std::move(changed));
}

}  // namespace sonvara
