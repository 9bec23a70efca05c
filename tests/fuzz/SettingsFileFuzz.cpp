// A settings file with anything in it.
#include "Require.h"
#include "platform/linux/system/IniUserDefaults.h"
#include "ports/SystemLog.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace sonvara;
using fuzz::require;

namespace {

struct NoLog final : SystemLog {
    [[nodiscard]] bool isEnabled(LogLevel, std::string_view) const override { return false; }
    void write(const LogMessage&) override {}
};

/// One application and one folder for all inputs.
struct Surroundings {
    int count = 1;
    char name[9] = "settings";
    char* arguments[2] = {name, nullptr};
    QCoreApplication application{count, arguments};
    QTemporaryDir folder;
    NoLog log;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static Surroundings here;
    const auto path = here.folder.filePath(QStringLiteral("sonvara.conf"));
    QFile file(path);
    require(file.open(QIODevice::WriteOnly));
    file.write(reinterpret_cast<const char*>(data), static_cast<qint64>(size));
    file.close();

    IniUserDefaults defaults(path.toStdString(), here.log, std::chrono::seconds(20));
    for (const auto* key : {"aiIntros", "aiProvider"}) {  // to the store one key is like another
        if (!defaults.hasObject(key)) require(!defaults.boolForKey(key) && !defaults.stringForKey(key));
    }
    if (size % 16 != 0) return 0;  // a write waits for the disk
    defaults.setBool("aiIntros", true);
    require(defaults.boolForKey("aiIntros") && defaults.flush(std::chrono::seconds(20)));
    require(IniUserDefaults(path.toStdString(), here.log, std::chrono::seconds(20)).boolForKey("aiIntros"));
    return 0;
}
