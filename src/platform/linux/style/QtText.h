// The core's texts as Qt's.
#pragma once

#include <QString>

#include <string>

namespace sonvara {

/// Bytes that are no UTF-8 become replacement characters. Any thread.
[[nodiscard]] inline QString toQt(const std::string& text)
{
    return QString::fromStdString(text);
}

}  // namespace sonvara
