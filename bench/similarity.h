#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace bench {

/// Image of one channel.
struct GreyImage {
    int width = 0;
    /// Brightness of the pixels, 0 to 255, row by row.
    std::vector<float> pixels;
};

/// Returns the brightness of each pixel of an RGBA image.
GreyImage greyOf(std::span<const std::uint8_t> rgba, int width);

/// Returns the mean structural similarity (SSIM) of two images of the same size. Equal images have similarity 1;
/// visible differences reduce it. The similarity is computed in windows of 8 x 8 pixels.
double similarity(const GreyImage& first, const GreyImage& second);

}  // namespace bench
