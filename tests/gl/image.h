#pragma once

#include <algorithm>
#include <cmath>

#include "scene.h"

namespace gltest {

struct Point {
    double x, y;
};

inline double distance(Point a, Point b) {
    return std::hypot(a.x - b.x, a.y - b.y);
}

struct Image {
    int width, height;
    Bytes rgba;

    /// A channel as 0 to 1, clamped to the edge.
    double channel(int x, int y, int c) const {
        const int at = std::clamp(y, 0, height - 1) * width + std::clamp(x, 0, width - 1);
        return rgba[static_cast<std::size_t>(at * 4 + c)] / 255.0;
    }
    /// Bilinear between texel centres.
    double sample(Point at, int c) const {
        const double x = at.x * width - 0.5, y = at.y * height - 0.5;
        const int left = static_cast<int>(std::floor(x)), low = static_cast<int>(std::floor(y));
        return std::lerp(
            std::lerp(channel(left, low, c), channel(left + 1, low, c), x - left),
            std::lerp(channel(left, low + 1, c), channel(left + 1, low + 1, c), x - left), y - low);
    }
    double value(Point at, int high) const {
        return 255.0 * sample(at, high) + sample(at, high + 1);
    }
};

}  // namespace gltest
