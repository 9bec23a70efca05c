#include "platform/linux/system/DisplayCheck.h"

#include <QByteArray>
#include <QString>
#include <cstdlib>
#include <mutex>
#include <unistd.h>
#include <utility>
#include <vector>

namespace sonvara {

namespace {

struct HeldMessage {
    QtMsgType type;
    QByteArray category;
    QString text;
};

// A handler of Qt is a function, and gets nothing of its own to know; threads of Qt's may call it, too.
std::mutex mutex;
std::vector<HeldMessage> held;

QByteArray sentence(const QString& reason)
{
    const auto isUnset = [](const char* name) { return qEnvironmentVariableIsEmpty(name); };
    if (isUnset("WAYLAND_DISPLAY") && isUnset("DISPLAY") && isUnset("QT_QPA_PLATFORM"))
        return "There is no display (neither WAYLAND_DISPLAY nor DISPLAY is set): start the program in a "
               "desktop session";
    return "The display cannot be used (" + reason.trimmed().toLocal8Bit() +
           "): start the program in a desktop session for which Qt's platform plugin is installed";
}

void hold(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    const std::lock_guard lock(mutex);
    if (type != QtFatalMsg) {
        held.push_back({type, context.category, text});
        return;
    }
    // Qt has failed with each plugin in turn; the first is the one that this desktop needs.
    const auto line = "sonvara: " + sentence(held.empty() ? text : held.front().text) + "\n";
    [[maybe_unused]] const auto written =
        ::write(STDERR_FILENO, line.data(), static_cast<std::size_t>(line.size()));
    ::_exit(EXIT_FAILURE);  // nothing may run that counts on the half of Qt that is made
}

}  // namespace

DisplayCheck::DisplayCheck() : previous_(qInstallMessageHandler(hold)) {}

DisplayCheck::~DisplayCheck()
{
    qInstallMessageHandler(previous_);
    const std::lock_guard lock(mutex);
    for (const auto& [type, category, text] : std::exchange(held, {}))
        previous_(type, {nullptr, 0, nullptr, category.constData()}, text);
}

}  // namespace sonvara
