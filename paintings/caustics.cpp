#include "paintings/caustics.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "paintings/noise.h"
#include "paintings/plate.h"

namespace paintings {
namespace {

/// Number of light rays per sample of the ground along each axis. Fewer rays would leave a visible pattern between the
/// bright lines.
constexpr int raysPerSample = 2;
/// Distance between samples in pixels, and its minimum as a fraction of the painting's side. The minimum limits the
/// computing time for large screens.
constexpr float pixelsPerSample = 1.5f;
constexpr float minSampleDistance = 1.0f / 1100.0f;
/// Maximum distance by which the waves move a light ray on the ground, as a fraction of the width of the waves.
constexpr float maxBend = 0.6f;
/// Distance by which a surface of slope 1 moves a light ray on the ground at depth 1. The unit of this distance is the
/// squared width of the waves.
constexpr float bendAtFocus = 0.16f;

/// Distances by which the waves move the light rays on the ground along x and along y, sampled on a grid.
struct Bends {
    Field x;
    Field y;
};

Bends bendRays(const View& view, float waveWidth, float depth, std::uint32_t seed) {
    const auto surface = [=](float x, float y) {
        return layeredNoise(Vec2{x, y} * (1.0f / waveWidth), 2, seed);
    };
    const float step = 0.02f * waveWidth;
    const float factor = depth * bendAtFocus * waveWidth * waveWidth / (2.0f * step);
    const float distance = waveWidth / 24.0f;
    const float margin = 2.0f * maxBend * waveWidth;
    return {Field(view, distance, margin,
                  [&](Vec2 at) {
                      return factor * (surface(at.x + step, at.y) - surface(at.x - step, at.y));
                  }),
            Field(view, distance, margin, [&](Vec2 at) {
                return factor * (surface(at.x, at.y + step) - surface(at.x, at.y - step));
            })};
}

/// Distributes the light of a ray over the four samples around the position (x, y). A closer sample gets more light.
/// The position is counted in samples from the first sample.
void addLight(Field& ground, float x, float y, float light) {
    if (x < 0.0f || y < 0.0f || x >= static_cast<float>(ground.columns - 1) ||
        y >= static_cast<float>(ground.rows - 1)) {
        return;
    }
    const int column = static_cast<int>(x);
    const int row = static_cast<int>(y);
    const float right = light * (x - static_cast<float>(column));
    const float left = light - right;
    const float down = y - static_cast<float>(row);
    float* const corner = ground.values.data() + std::ptrdiff_t{row} * ground.columns + column;
    corner[0] += left * (1.0f - down);
    corner[1] += right * (1.0f - down);
    corner[ground.columns] += left * down;
    corner[ground.columns + 1] += right * down;
}

/// Smooths the samples. Each sample becomes a weighted mean of itself (weight 2) and of the samples `step` places
/// before and after it (weight 1 each).
void soften(std::vector<float>& samples, std::ptrdiff_t step) {
    const std::vector<float> sharp = samples;
    for (auto at = static_cast<std::size_t>(step);
         at + static_cast<std::size_t>(step) < samples.size(); ++at) {
        samples[at] = 0.5f * sharp[at] + 0.25f * (sharp[at - static_cast<std::size_t>(step)] +
                                                  sharp[at + static_cast<std::size_t>(step)]);
    }
}

/// Returns the brightness of the ground for a density of light rays. The mean density is 1.
float sunlightOf(float density) {
    constexpr float brightness = 0.6f;
    constexpr float ground = 0.34f;
    return std::max(0.0f, 1.0f - std::exp(-brightness * density) - ground);
}

}  // namespace

Field makeCaustics(const View& view, float waveWidth, float depth, std::uint32_t seed) {
    const Bends bends = bendRays(view, waveWidth, depth, seed);
    Field ground(view, std::max(pixelsPerSample * view.pixel, minSampleDistance), 0.0f);
    const float light = 1.0f / static_cast<float>(raysPerSample * raysPerSample);
    const int border = static_cast<int>(maxBend * waveWidth / ground.distance) * raysPerSample;
    const auto positionOf = [&](int ray, float start) {
        return start +
               static_cast<float>(ray) * ground.distance / static_cast<float>(raysPerSample);
    };
    for (int row = -border; row < raysPerSample * ground.rows + border; ++row) {
        const float y = positionOf(row, ground.start.y);
        const std::vector<float> rowX = bends.x.rowAt(y);
        const std::vector<float> rowY = bends.y.rowAt(y);
        for (int column = -border; column < raysPerSample * ground.columns + border; ++column) {
            const float x = positionOf(column, ground.start.x);
            const float place = bends.x.samplesTo(x);
            const auto sample = static_cast<std::size_t>(place);
            const float weight = place - static_cast<float>(sample);
            addLight(ground, ground.samplesTo(x + mix(rowX[sample], rowX[sample + 1], weight)),
                     (y + mix(rowY[sample], rowY[sample + 1], weight) - ground.start.y) /
                         ground.distance,
                     light);
        }
    }
    for (int pass = 0; pass < 2; ++pass) {
        soften(ground.values, 1);
        soften(ground.values, ground.columns);
    }
    std::transform(ground.values.begin(), ground.values.end(), ground.values.begin(), sunlightOf);
    return ground;
}

}  // namespace paintings
