#include "hostkit/instruments/frame_similarity.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

namespace hostkit {
namespace {

/// Every sixth frame is compared.
constexpr int frameStep = 6;

/// Side, in pixels, of the image blocks whose similarity is computed.
constexpr int blockSide = 8;
/// Distance in pixels between the corners of neighbouring blocks. The blocks overlap.
constexpr int blockStep = 4;
/// The constants C1 and C2 of the SSIM, for channels from 0 to 255. They prevent a division by nearly zero in dark
/// blocks and in blocks of one colour.
constexpr double brightnessConstant = 0.01 * 255.0 * 0.01 * 255.0;
constexpr double contrastConstant = 0.03 * 255.0 * 0.03 * 255.0;

double blockSimilarity(const GreyImage& first, const GreyImage& second, std::size_t corner) {
    double sum1 = 0.0, sum2 = 0.0, squares1 = 0.0, squares2 = 0.0, products = 0.0;
    for (std::size_t row = 0; row < blockSide; ++row) {
        for (std::size_t column = 0; column < blockSide; ++column) {
            const std::size_t at = corner + row * static_cast<std::size_t>(first.width) + column;
            const double a = static_cast<double>(first.pixels[at]);
            const double b = static_cast<double>(second.pixels[at]);
            sum1 += a, sum2 += b, squares1 += a * a, squares2 += b * b, products += a * b;
        }
    }
    constexpr double count = blockSide * blockSide;
    const double mean1 = sum1 / count, mean2 = sum2 / count;
    const double variance1 = squares1 / count - mean1 * mean1;
    const double variance2 = squares2 / count - mean2 * mean2;
    const double covariance = products / count - mean1 * mean2;
    return (2.0 * mean1 * mean2 + brightnessConstant) * (2.0 * covariance + contrastConstant) /
           ((mean1 * mean1 + mean2 * mean2 + brightnessConstant) *
            (variance1 + variance2 + contrastConstant));
}

GreyImage greyOf(std::span<const std::uint8_t> rgba, int width) {
    GreyImage image{width, {}};
    for (std::size_t at = 0; at < rgba.size(); at += 4) {
        image.pixels.push_back(0.3f * static_cast<float>(rgba[at]) +
                               0.59f * static_cast<float>(rgba[at + 1]) +
                               0.11f * static_cast<float>(rgba[at + 2]));
    }
    return image;
}

/// Returns the mean similarity of all pairs of blocks at the same place in both images.
double similarity(const GreyImage& first, const GreyImage& second) {
    const int height = static_cast<int>(first.pixels.size()) / first.width;
    double sum = 0.0;
    int blocks = 0;
    for (int y = 0; y + blockSide <= height; y += blockStep) {
        for (int x = 0; x + blockSide <= first.width; x += blockStep) {
            sum += blockSimilarity(first, second, static_cast<std::size_t>(y * first.width + x));
            ++blocks;
        }
    }
    return sum / blocks;
}

}  // namespace

std::vector<GreyImage> playedFrames(EffectHostOptions options, const GestureScript& script) {
    const int width = options.width;
    EffectHost host(std::move(options));
    std::vector<GreyImage> frames;
    for (int frame = 0; frame < script.frames; ++frame) {
        host.step(eventsOfFrame(script, frame), displayedFrame);
        if (frame % frameStep == 0) {
            host.draw();
            frames.push_back(greyOf(host.pixels(), width));
        }
    }
    return frames;
}

double lowestSimilarity(const std::vector<GreyImage>& frames,
                        const std::vector<GreyImage>& others) {
    double lowest = 1.0;
    for (std::size_t frame = 0; frame < frames.size(); ++frame) {
        lowest = std::min(lowest, similarity(frames[frame], others[frame]));
    }
    return lowest;
}

}  // namespace hostkit
