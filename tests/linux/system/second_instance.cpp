// Another start of the program. Its exit status tells whether it found itself the first (0) or not (1).
#include "platform/linux/system/SingleInstance.h"

#include <QCoreApplication>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    sonvara::SingleInstance instance(QDBusConnection::sessionBus(), [] {});
    return instance.claim() ? 0 : 1;
}
