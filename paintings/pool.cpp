#include <algorithm>
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

/// Side of a tile including its joint, as a fraction of the painting's side.
constexpr float tileSide = 0.052f;
/// Half of the width of the joint between two tiles, as a fraction of the painting's side.
constexpr float halfJoint = 0.0012f;
constexpr Color shallow{0.62f, 0.90f, 0.93f};
constexpr Color deep{0.36f, 0.75f, 0.86f};
constexpr Color joint{0.86f, 0.97f, 0.97f};
constexpr Color sunlight{0.98f, 1.0f, 0.98f};
constexpr float sampleDistance = 0.01f;

Color tileAt(Vec2 at, float depth, float pixel) {
    const float column = std::floor(at.x / tileSide);
    const float row = std::floor(at.y / tileSide);
    const float fromCenter =
        std::max(std::abs(at.x / tileSide - column - 0.5f), std::abs(at.y / tileSide - row - 0.5f));
    const float toEdge = tileSide * (0.5f - fromCenter);
    const float shade = randomAt(static_cast<int>(column), static_cast<int>(row), 71) - 0.5f;
    const Color tile = mix(shallow, deep, 0.75f * depth + 0.14f * shade);
    return mix(mix(tile, joint, 0.55f), tile,
               smoothStep(halfJoint, halfJoint + std::max(halfJoint, pixel), toEdge));
}

Painter makePool(const View& view) {
    const auto makeField = [&](auto valueAt) { return Field(view, sampleDistance, 0.0f, valueAt); };
    const auto sway = [](Vec2 at, unsigned seed) {
        return 0.006f * layeredNoise(at * 7.0f, 2, seed);
    };
    return [depth = makeField([](Vec2 at) {
                const float slope = 0.7f * (at.y + at.x);
                return smoothStep(-0.8f, 0.8f, slope + layeredNoise(at * 1.4f, 2, 51));
            }),
            swayX = makeField([=](Vec2 at) { return sway(at, 61); }),
            swayY = makeField([=](Vec2 at) { return sway(at, 65); }),
            caustics = makeCaustics(view, 0.13f, 1.15f, 8)](Canvas& canvas) {
        paintAll(canvas, [&](Vec2 at) {
            const Vec2 bent{at.x + swayX.at(at), at.y + swayY.at(at)};
            return mix(tileAt(bent, depth.at(at), canvas.view.pixel) * 0.97f, sunlight,
                       0.85f * caustics.at(at));
        });
    };
}

}  // namespace

hostkit::Image paintPool(int width, int height) {
    return paint(makePool, width, height);
}

}  // namespace paintings
