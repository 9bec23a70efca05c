// Pictures as they were when somebody looked at them.
#pragma once

#include "helpers/Difference.h"

#include <QImage>
#include <QString>
#include <gtest/gtest.h>

#include <cstdlib>

namespace sonvara::test {

/// Whether the picture is the one of that name in the folder `golden` beside the test, but for roundings. To renew it after
/// a wanted change: run once with SONVARA_RENEW_GOLDEN set, and look at it.
inline testing::AssertionResult looksAsBefore(const QImage& image, const QString& name)
{
    constexpr int rounding = 12;  // of 255
    const auto path = QStringLiteral(GOLDEN_FOLDER "/%1.png").arg(name);
    if (std::getenv("SONVARA_RENEW_GOLDEN") != nullptr && !image.save(path))
        return testing::AssertionFailure() << "cannot be saved";
    const auto golden = QImage(path).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (golden.size() != image.size())
        return testing::AssertionFailure() << image.width() << " to " << image.height() << " pixels";
    const int differs = difference(image, golden);
    if (differs <= rounding) return testing::AssertionSuccess();
    const auto seen = QStringLiteral("%1.png").arg(name);
    image.save(seen);
    return testing::AssertionFailure() << "differs by " << differs << ": see " << seen.toStdString();
}

}  // namespace sonvara::test
