#include "platform/linux/system/LocaleDigits.h"

#include <QLocale>
#include <QString>

namespace sonvara {

std::string zeroDigit()
{
    return QLocale::system().zeroDigit().toStdString();
}

}  // namespace sonvara
