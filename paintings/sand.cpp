#include <cmath>

#include "hostkit/image.h"
#include "paintings/canvas.h"
#include "paintings/caustics.h"
#include "paintings/field.h"
#include "paintings/noise.h"
#include "paintings/paintings.h"
#include "paintings/plate.h"

namespace paintings {
namespace {

/// Colours of the sand: on the ridges, and in the furrows between the ridges.
struct Sand {
    Color ridge;
    Color furrow;
};
// Colours of the sand at three depths of the water, from the shore to deep water.
constexpr Sand shore{{1.0f, 0.965f, 0.89f}, {0.91f, 0.84f, 0.73f}};
constexpr Sand shallow{{0.975f, 0.975f, 0.925f}, {0.83f, 0.885f, 0.825f}};
constexpr Sand deep{{0.86f, 0.965f, 0.95f}, {0.66f, 0.86f, 0.87f}};
constexpr Color sunlight{1.0f, 1.0f, 0.96f};
constexpr float sampleDistance = 0.005f;
constexpr float grainsPerUnit = 420.0f;

Color sandAt(float depth, float light) {
    const auto lit = [&](const Sand& sand) { return mix(sand.furrow, sand.ridge, light); };
    return depth < 0.5f ? mix(lit(shore), lit(shallow), 2.0f * depth)
                        : mix(lit(shallow), lit(deep), 2.0f * depth - 1.0f);
}

/// Returns the brightness of the sand, from about 0.16 in a furrow to 0.96 on a ridge. Ridges and furrows alternate
/// like a sine wave.
float ridgesAt(Vec2 at) {
    const float drift = layeredNoise(at * 5.0f, 3, 11);
    const float phase = 46.0f * (0.35f * at.x + at.y) + 5.0f * drift;
    const float height = smoothStep(-0.4f, 0.4f, layeredNoise(at * 3.0f, 2, 31));
    return 0.56f + 0.4f * height * std::sin(phase + 0.7f * std::sin(phase));
}

/// Returns the depth of the water, from 0 at the shore to 1.
float depthAt(Vec2 at) {
    const float slope = 1.2f * (at.y - 0.6f * at.x);
    return smoothStep(-0.7f, 0.8f, slope + layeredNoise(at * 1.6f, 2, 23));
}

Painter makeSand(const View& view) {
    return [ridges = Field(view, sampleDistance, 0.0f, ridgesAt),
            depth = Field(view, sampleDistance, 0.0f, depthAt),
            caustics = makeCaustics(view, 0.11f, 1.0f, 3)](Canvas& canvas) {
        paintAll(canvas, [&](Vec2 at) {
            const float light = ridges.at(at) + 0.05f * noise(at * grainsPerUnit, 41);
            return mix(sandAt(depth.at(at), light) * 0.97f, sunlight, 0.85f * caustics.at(at));
        });
    };
}

}  // namespace

hostkit::Image paintSand(int width, int height) {
    return paint(makeSand, width, height);
}

}  // namespace paintings
