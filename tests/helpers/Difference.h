// How much two pictures differ.
#pragma once

#include <QColor>
#include <QImage>

#include <algorithm>
#include <cstdlib>

namespace sonvara::test {

/// The largest difference of a channel between two pictures of one size.
inline int difference(const QImage& a, const QImage& b)
{
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const auto left = a.pixelColor(x, y).rgba64();
            const auto right = b.pixelColor(x, y).rgba64();
            largest = std::max({largest, std::abs(left.alpha8() - right.alpha8()),
                                std::abs(left.red8() - right.red8()) * left.alpha8() / 255,
                                std::abs(left.green8() - right.green8()) * left.alpha8() / 255,
                                std::abs(left.blue8() - right.blue8()) * left.alpha8() / 255});
        }
    }
    return largest;
}

}  // namespace sonvara::test
