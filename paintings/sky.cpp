#include <algorithm>
#include <iterator>

#include "hostkit/image.h"
#include "paintings/canvas.h"
#include "paintings/field.h"
#include "paintings/noise.h"
#include "paintings/paintings.h"
#include "paintings/plate.h"

namespace paintings {
namespace {

/// Colours of the sky at equal distances, from the top of the painting to the horizon.
constexpr Color skyColors[] = {{0.60f, 0.76f, 0.92f}, {0.74f, 0.83f, 0.94f}, {0.89f, 0.85f, 0.92f},
                               {0.98f, 0.85f, 0.84f}, {1.00f, 0.88f, 0.76f}, {1.00f, 0.94f, 0.80f}};
constexpr Color cloudLight{1.0f, 0.98f, 0.95f};
constexpr Color cloudShade{0.80f, 0.76f, 0.86f};
constexpr float sampleDistance = 1.0f / 600.0f;
/// Short step towards the sun, which is at the lower right, as a fraction of the painting's side.
constexpr Vec2 toSun{0.010f, 0.014f};

/// Returns the colour of the clear sky. The `height` is 0 at the top and 1 at the horizon.
Color skyAt(float height) {
    const float place =
        std::clamp(height, 0.0f, 0.999f) * static_cast<float>(std::size(skyColors) - 1);
    const int above = static_cast<int>(place);
    const float below = place - static_cast<float>(above);
    // The mean of a linear and a smooth transition has soft edges and no stripes of one colour.
    return mix(skyColors[above], skyColors[above + 1],
               0.5f * (below + smoothStep(0.0f, 1.0f, below)));
}

/// Returns the density of the clouds, 0 to 1. The clouds are wide and flat.
float cloudsAt(Vec2 at) {
    const Vec2 wide{at.x * 2.1f + 0.5f * at.y, at.y * 5.2f};
    const float bend = layeredNoise(wide, 3, 7);
    const Vec2 bent{wide.x + 0.9f * bend, wide.y + 0.6f * bend + 3.0f};
    return smoothStep(-0.12f, 0.50f, layeredNoise(bent, 5, 19));
}

Painter makeSky(const View& view) {
    return [clouds = Field(view, sampleDistance, toSun.y, cloudsAt)](Canvas& canvas) {
        paintAll(canvas, [&](Vec2 at) {
            const Color sky = skyAt(0.5f + at.y + 0.12f * at.x);
            const float dense = clouds.at(at);
            // A cloud is bright where the clouds become thinner in the direction of the sun.
            const float light =
                std::clamp(0.5f + 2.0f * (dense - clouds.at(at + toSun)), 0.0f, 1.0f);
            const Color cloud = mix(mix(sky, cloudShade, 0.5f), cloudLight, 0.45f + 0.55f * light);
            return mix(sky, cloud, 0.72f * dense);
        });
    };
}

}  // namespace

hostkit::Image paintSky(int width, int height) {
    return paint(makeSky, width, height);
}

}  // namespace paintings
