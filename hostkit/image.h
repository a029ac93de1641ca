#pragma once

#include <cstdint>
#include <vector>

namespace hostkit {

/// An image of 32-bit RGBA pixels.
struct Image {
    /// Width in pixels.
    int width = 0;
    /// Height in pixels.
    int height = 0;
    /// 4 * width * height bytes: red, green, blue, alpha. Rows go from top to bottom and have no padding.
    std::vector<std::uint8_t> rgba;

    /// Tells whether the image is empty.
    /// @return true if it has no pixels
    bool empty() const { return rgba.empty(); }
};

/// Computes the default reflection map: a soft sky with light lines like those on the floor of a pool.
/// @param size width and height in pixels
/// @return a square image
Image makeReflectionMap(int size = 256);

/// Computes a checkerboard that becomes redder to the right and greener downwards, so its colours show the orientation.
/// @param width width in pixels
/// @param height height in pixels
/// @return an image of that size
Image makeTestImage(int width, int height);

}  // namespace hostkit
