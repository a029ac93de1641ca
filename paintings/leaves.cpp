#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "hostkit/image.h"
#include "paintings/canvas.h"
#include "paintings/field.h"
#include "paintings/noise.h"
#include "paintings/paintings.h"
#include "paintings/plate.h"

namespace paintings {
namespace {

constexpr Color wall{0.985f, 0.97f, 0.94f};
constexpr Color sunnyWall{1.0f, 0.94f, 0.84f};
constexpr Color shade{0.56f, 0.69f, 0.66f};
constexpr float sampleDistance = 0.01f;

/// A twig with leaves on alternating sides. The painting shows only its shadow, which falls on a wall.
struct Twig {
    Vec2 start;
    /// Direction of the stem at its start, and the change of this direction from leaf to leaf. Both are in radians; the
    /// direction is measured from the x axis.
    float angle, bend;
    int leaves;
    /// Length of the largest leaf as a fraction of the painting's side.
    float size;
    /// Width of the soft edges of the shadows as a fraction of the painting's side.
    float blur;
    /// Darkness of the shadows, 0 to 1.
    float darkness;
};

// The twigs of the painting. A twig that is far from the wall casts a large, blurred shadow.
constexpr Twig twigs[] = {
    {{-0.55f, -0.60f}, 0.95f, -0.02f, 13, 0.26f, 0.060f, 0.75f},
    {{0.55f, 0.62f}, 4.05f, 0.02f, 12, 0.25f, 0.055f, 0.75f},
    {{0.62f, -0.50f}, 2.55f, -0.025f, 15, 0.19f, 0.024f, 0.70f},
    {{-0.66f, 0.42f}, -0.35f, 0.02f, 15, 0.18f, 0.026f, 0.68f},
    {{-0.10f, -0.60f}, 1.15f, 0.045f, 17, 0.135f, 0.0090f, 0.62f},
    {{0.62f, 0.02f}, 3.0f, -0.04f, 16, 0.125f, 0.0075f, 0.62f},
    {{-0.30f, 0.62f}, -1.25f, 0.05f, 15, 0.120f, 0.0080f, 0.60f},
};

/// The shadow of a leaf, or of a part of the stem.
struct Shadow {
    Vec2 center;
    /// Unit vector along the shadow, from one tip to the other.
    Vec2 along;
    /// Half of the length.
    float halfLength;
    /// Half of the largest width.
    float halfWidth;
    float blur;
    float darkness;
};

Shadow shadowBetween(Vec2 from, Vec2 to, float halfWidth, const Twig& twig) {
    const float distance = length(to - from);
    return {(from + to) * 0.5f, (to - from) * (1.0f / distance),
            0.5f * distance,    halfWidth,
            twig.blur,          twig.darkness};
}

void addShadows(const Twig& twig, std::uint32_t seed, std::vector<Shadow>& shadows) {
    Vec2 at = twig.start;
    float angle = twig.angle;
    for (int leaf = 0; leaf < twig.leaves; ++leaf) {
        const auto random = [&](int index) { return randomAt(leaf, index, seed); };
        const float age = 1.0f - static_cast<float>(leaf) / static_cast<float>(twig.leaves);
        const float size = twig.size * (0.45f + 0.55f * age) * (0.8f + 0.35f * random(0));
        const Vec2 next = at + directionAt(angle) * (0.3f * twig.size * (0.5f + 0.5f * age));
        shadows.push_back(shadowBetween(at, next, 0.012f * twig.size, twig));
        at = next;
        angle += twig.bend + 0.2f * (random(1) - 0.5f);
        const float side = leaf % 2 == 0 ? 1.0f : -1.0f;
        const float turn = leaf + 1 == twig.leaves ? 0.0f : side * (0.55f + 0.5f * random(2));
        const Vec2 tip = at + directionAt(angle + turn) * size;
        shadows.push_back(shadowBetween(at, tip, size * (0.12f + 0.06f * random(3)), twig));
    }
}

std::vector<Shadow> makeShadows() {
    std::vector<Shadow> shadows;
    std::uint32_t seed = 0;
    for (const Twig& twig : twigs) {
        addShadows(twig, ++seed, shadows);
    }
    return shadows;
}

/// Returns how dark a shadow is at a position, from 0 (no shadow) to 1.
float coverAt(const Shadow& shadow, Vec2 at) {
    const Vec2 offset = at - shadow.center;
    const float along = dot(offset, shadow.along) / shadow.halfLength;
    const float across = dot(offset, {-shadow.along.y, shadow.along.x}) / shadow.halfWidth;
    // The two sides of a leaf are parabolas that meet at the tips. Blur rounds the tips, and makes narrow shadows
    // lighter.
    const float blur = shadow.blur / shadow.halfWidth;
    const float inside = 1.0f - along * along - std::sqrt(across * across + 0.25f * blur * blur);
    return smoothStep(-blur, 0.6f * blur + 0.2f, inside) * std::min(1.0f, 1.2f / (0.7f + blur));
}

Painter makeLeaves(const View& view) {
    const auto sunlightAt = [](Vec2 at) {
        return std::clamp(0.5f + 0.5f * layeredNoise(at * 1.7f, 2, 5) + 0.4f * (at.x - at.y), 0.0f,
                          1.0f);
    };
    return [shadows = makeShadows(),
            sunlight = Field(view, sampleDistance, 0.0f, sunlightAt)](Canvas& canvas) {
        paintAll(canvas, [&](Vec2 at) {
            return mix(wall, sunnyWall, 0.75f * sunlight.at(at)) *
                   (1.0f + 0.012f * noise(at * 260.0f, 8));
        });
        for (const Shadow& shadow : shadows) {
            const float reach = shadow.halfLength + 2.0f * shadow.blur;
            paintAround(canvas, shadow.center, reach, [&](Vec2 at, Color& color) {
                color = mix(color, color * shade, shadow.darkness * coverAt(shadow, at));
            });
        }
    };
}

}  // namespace

hostkit::Image paintLeaves(int width, int height) {
    return paint(makeLeaves, width, height);
}

}  // namespace paintings
