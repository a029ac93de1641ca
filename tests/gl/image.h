#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <initializer_list>

#include "tests/host/test_host.h"

// Vectors and textures for models of the shaders. The models run on the CPU in double precision.

namespace gltest {

using namespace testhost;

struct Point {
    double x, y;
};

inline Point operator+(Point a, Point b) {
    return {a.x + b.x, a.y + b.y};
}
inline Point operator-(Point a, Point b) {
    return {a.x - b.x, a.y - b.y};
}
inline Point operator*(Point a, Point b) {
    return {a.x * b.x, a.y * b.y};
}
inline Point operator*(double factor, Point p) {
    return {factor * p.x, factor * p.y};
}
inline double dot(Point a, Point b) {
    return a.x * b.x + a.y * b.y;
}
inline double distance(Point a, Point b) {
    return std::sqrt(dot(a - b, a - b));
}

struct Image {
    int width, height;
    Bytes rgba;

    /// Returns the texture coordinate of a texel's centre.
    Point centre(int x, int y) const { return {(x + 0.5) / width, (y + 0.5) / height}; }
    /// Returns a channel of a texel in [0, 1]. Coordinates outside the image count as those of the nearest edge texel.
    double channel(int x, int y, int c) const {
        const int at = std::clamp(y, 0, height - 1) * width + std::clamp(x, 0, width - 1);
        return rgba[static_cast<std::size_t>(at * 4 + c)] / 255.0;
    }
    /// Returns a channel at a texture coordinate by bilinear interpolation.
    double sample(Point at, int c) const {
        const double x = at.x * width - 0.5, y = at.y * height - 0.5;
        const int left = static_cast<int>(std::floor(x)), low = static_cast<int>(std::floor(y));
        return std::lerp(
            std::lerp(channel(left, low, c), channel(left + 1, low, c), x - left),
            std::lerp(channel(left, low + 1, c), channel(left + 1, low + 1, c), x - left), y - low);
    }
    /// Returns a value that two channels store as 255 * high + low. `high` is the index of the first channel.
    double value(Point at, int high) const {
        return 255.0 * sample(at, high) + sample(at, high + 1);
    }
};

/// Returns an image in which two channels store each value. Each function computes a value from the centre of a texel.
template <class... Function>
Image valueImage(int width, int height, Function... values) {
    Image image{width, height, Bytes(static_cast<std::size_t>(width * height) * 4)};
    for (int at = 0; at < width * height; ++at) {
        std::uint8_t* to = &image.rgba[static_cast<std::size_t>(at) * 4];
        for (const double value : {values(image.centre(at % width, at / width))...}) {
            to[0] = static_cast<std::uint8_t>(std::floor(value));
            to[1] = static_cast<std::uint8_t>(std::lround(255.0 * (value - std::floor(value))));
            to += 2;
        }
    }
    return image;
}

}  // namespace gltest
