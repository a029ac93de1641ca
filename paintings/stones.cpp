#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <vector>

#include "hostkit/image.h"
#include "paintings/canvas.h"
#include "paintings/caustics.h"
#include "paintings/noise.h"
#include "paintings/paintings.h"
#include "paintings/plate.h"

namespace paintings {
namespace {

/// A stone whose outline is nearly an ellipse.
struct Stone {
    Vec2 center;
    /// Largest distance of the outline from the centre.
    float radius;
    /// Unit vector along the longer axis of the ellipse.
    Vec2 along;
    /// Length of the ellipse's shorter axis divided by the length of its longer axis.
    float flatness;
    /// Amplitudes of the cosine and the sine in the third harmonic of the outline, which makes the outline uneven.
    Vec2 corners;
    Color color;
    /// Seed of the bands.
    std::uint32_t seed;
};

constexpr Color stoneColors[] = {
    {0.95f, 0.93f, 0.89f}, {0.82f, 0.83f, 0.83f}, {0.92f, 0.85f, 0.79f}, {0.80f, 0.83f, 0.79f},
    {0.75f, 0.79f, 0.82f}, {0.90f, 0.87f, 0.81f}, {0.87f, 0.82f, 0.79f}, {0.97f, 0.955f, 0.93f}};
constexpr Color sand{0.93f, 0.90f, 0.82f};
constexpr Color water{0.80f, 0.93f, 0.93f};
constexpr Color shadow{0.60f, 0.62f, 0.66f};
constexpr Color sunlight{1.0f, 1.0f, 0.96f};
/// Direction towards the light, which is at the upper left.
constexpr Vec2 toLight{-0.5f, -0.62f};
constexpr int attempts = 3000;
constexpr float minRadius = 0.034f;
constexpr float gap = 0.004f;

/// Returns the largest radius, up to `wanted`, with which a stone at `center` touches no other stone.
float freeRadius(const std::vector<Stone>& stones, Vec2 center, float wanted) {
    for (const Stone& stone : stones) {
        wanted = std::min(wanted, length(stone.center - center) - stone.radius - gap);
    }
    return wanted;
}

/// Places stones that do not overlap. The large stones are placed first.
std::vector<Stone> placeStones() {
    std::vector<Stone> stones;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const auto random = [&](int index) { return randomAt(attempt, index, 90); };
        const Vec2 center{1.3f * random(0) - 0.65f, 1.3f * random(1) - 0.65f};
        const float progress = static_cast<float>(attempt) / attempts;
        const float wanted = 0.125f - 0.09f * std::sqrt(progress) + 0.02f * random(2);
        const float radius = freeRadius(stones, center, wanted);
        if (radius >= minRadius) {
            constexpr float fullTurn = 6.2831853f;
            const auto color = static_cast<std::size_t>(std::size(stoneColors) * random(7));
            stones.push_back({center, radius, directionAt(fullTurn * random(3)),
                              0.66f + 0.26f * random(4),
                              Vec2{random(5) - 0.5f, random(6) - 0.5f} * 0.1f, stoneColors[color],
                              static_cast<std::uint32_t>(attempt)});
        }
    }
    return stones;
}

/// Returns a position in the coordinates of a stone. The centre of the stone is (0, 0), and the outline has the
/// distance 1 from it.
Vec2 relativeTo(const Stone& stone, Vec2 at) {
    const Vec2 offset = (at - stone.center) * (1.0f / stone.radius);
    const float x = dot(offset, stone.along);
    const float y = dot(offset, {-stone.along.y, stone.along.x}) / stone.flatness;
    const float square = x * x + y * y + 1e-6f;
    const float harmonic =
        stone.corners.x * x * (x * x - 3.0f * y * y) + stone.corners.y * y * (3.0f * x * x - y * y);
    constexpr float inset = 0.05f;  // keeps the corners within the radius
    return Vec2{x, y} * (1.0f + inset + harmonic / (square * std::sqrt(square)));
}

/// Returns the colour of a stone at the position `at`. `inside` is the result of relativeTo for this position.
Color stoneAt(const Stone& stone, Vec2 at, Vec2 inside) {
    const Vec2 outwards = (at - stone.center) * (1.0f / stone.radius);
    const float rim = 1.0f - std::sqrt(std::max(0.0f, 1.0f - dot(inside, inside)));
    const float bands = noise({inside.x * 1.1f, inside.y * 3.2f}, stone.seed);
    const float grain = noise(at * 330.0f, 4);
    const float light =
        0.93f + 0.2f * dot(outwards, toLight) - 0.2f * rim * rim + 0.05f * bands + 0.022f * grain;
    const Vec2 fromGloss = outwards - toLight * 0.55f;
    const float gloss = std::exp(-5.0f * dot(fromGloss, fromGloss));
    return mix(stone.color * light, white, 0.2f * gloss);
}

void paintShadow(Canvas& canvas, const Stone& stone) {
    const Vec2 offset = Vec2{0.1f, 0.14f} * stone.radius;
    paintAround(canvas, stone.center + offset, 1.35f * stone.radius, [&](Vec2 at, Color& color) {
        const float dark = smoothStep(1.28f, 0.85f, length(relativeTo(stone, at - offset)));
        color = mix(color, color * shadow, 0.8f * dark);
    });
}

void paintStone(Canvas& canvas, const Stone& stone) {
    paintAround(canvas, stone.center, 1.1f * stone.radius, [&](Vec2 at, Color& color) {
        const Vec2 inside = relativeTo(stone, at);
        const float depth = (1.0f - length(inside)) * stone.radius * stone.flatness;
        const float cover = std::clamp(0.5f + depth / canvas.view.pixel, 0.0f, 1.0f);
        if (cover > 0.0f) {
            color = mix(color, stoneAt(stone, at, inside), cover);
        }
    });
}

Painter makeStones(const View& view) {
    return
        [stones = placeStones(), caustics = makeCaustics(view, 0.12f, 1.0f, 21)](Canvas& canvas) {
            paintAll(canvas, [](Vec2 at) {
                return mix(sand, water, 0.5f + 0.5f * noise(at * 2.0f, 6)) *
                       (1.0f + 0.02f * noise(at * 400.0f, 2));
            });
            for (const Stone& stone : stones) {
                paintShadow(canvas, stone);
            }
            for (const Stone& stone : stones) {
                paintStone(canvas, stone);
            }
            constexpr float plate = 1.0f;
            paintAround(canvas, {}, plate, [&](Vec2 at, Color& color) {
                color = mix(color * 0.98f, sunlight, 0.5f * caustics.at(at));
            });
        };
}

}  // namespace

hostkit::Image paintStones(int width, int height) {
    return paint(makeStones, width, height);
}

}  // namespace paintings
