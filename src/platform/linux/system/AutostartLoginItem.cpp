#include "platform/linux/system/AutostartLoginItem.h"

#include "ports/Queues.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QSaveFile>
#include <QStandardPaths>

#include <memory>
#include <utility>

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

LoginItemStatus statusOf(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return LoginItemStatus::notRegistered;
    const auto state = readAutostart(file.readAll());
    if (state.isOff) return LoginItemStatus::notRegistered;
    return canStart(state.program) ? LoginItemStatus::enabled : LoginItemStatus::notFound;
}

std::optional<std::string> write(const AutostartEntry& entry, const QString& folder, const QString& path)
{
    if (!QDir().mkpath(folder)) return problem(folder, QStringLiteral("cannot be created"));
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) return problem(path, file.errorString());
    file.write(autostartText(entry));
    if (!file.commit()) return problem(path, file.errorString());
    return std::nullopt;
}

std::optional<std::string> remove(const QString& path)
{
    QFile file(path);
    if (file.remove() || !file.exists()) return std::nullopt;
    return problem(path, file.errorString());
}

}  // namespace

AutostartLoginItem::AutostartLoginItem(AutostartEntry entry, const QString& identifier, GlobalQueue& workers,
                                       const QString& folder, std::chrono::milliseconds limit)
    : entry_(std::move(entry)),
      workers_(workers),
      folder_(folder),
      path_(folder + QLatin1Char('/') + identifier + QLatin1String(".desktop")),
      limit_(limit)
{}

AutostartEntry AutostartLoginItem::thisProgram()
{
    return {QGuiApplication::applicationDisplayName(), QCoreApplication::applicationFilePath(),
            QStringLiteral(SONVARA_IDENTIFIER)};
}

QString AutostartLoginItem::userFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QLatin1String("/autostart");
}

/// What `call` returns, which a worker runs after all earlier ones; nothing if that takes too long.
template <typename Result>
std::optional<Result> AutostartLoginItem::within(std::function<Result()> call) const
{
    const auto result = std::make_shared<Result>();
    const auto done = std::make_shared<std::promise<void>>();
    const auto before = std::exchange(last_, done->get_future().share());
    workers_.post(QualityOfService::userInitiated, [result, done, before, call = std::move(call)] {
        if (before.valid()) before.wait();
        *result = call();
        done->set_value();
    });
    if (last_.wait_for(limit_) != std::future_status::ready) return std::nullopt;
    return *result;
}

LoginItemStatus AutostartLoginItem::status() const
{
    return within<LoginItemStatus>([path = path_] { return statusOf(path); })
        .value_or(LoginItemStatus::notRegistered);
}

std::optional<std::string> AutostartLoginItem::registerItem()
{
    return change([entry = entry_, folder = folder_, path = path_] { return write(entry, folder, path); });
}

std::optional<std::string> AutostartLoginItem::unregisterItem()
{
    return change([path = path_] { return remove(path); });
}

std::optional<std::string> AutostartLoginItem::change(std::function<std::optional<std::string>()> file)
{
    return within(std::move(file)).value_or(problem(path_, QStringLiteral("the disk does not answer")));
}

}  // namespace sonvara
