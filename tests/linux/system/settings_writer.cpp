// Another process that writes settings: the file, a prefix for the keys, and how many.
#include "helpers/RecordingLog.h"

#include "platform/linux/system/IniUserDefaults.h"

#include <QCoreApplication>
#include <string>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    if (argc != 4) return 2;
    sonvara::test::RecordingLog log;
    sonvara::IniUserDefaults defaults(argv[1], log, std::chrono::seconds(20));
    for (int i = 0; i < std::stoi(argv[3]); ++i) defaults.setString(argv[2] + std::to_string(i), "value");
    return log.messages().empty() ? 0 : 1;
}
