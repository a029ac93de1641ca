#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <vector>

#include "hostkit/image.h"
#include "paintings/canvas.h"
#include "paintings/noise.h"
#include "paintings/paintings.h"
#include "paintings/plate.h"

namespace paintings {
namespace {

/// A sheet of paper with a wavy upper edge. The sheet covers the whole picture below this edge.
struct Sheet {
    /// Mean y of the edge.
    float height;
    /// Amplitude of the waves.
    float amplitude;
    /// Angular frequency of the longer of the two waves that form the edge, in radians per side of the whole picture.
    float frequency;
    /// Phase of the longer wave at the centre of the picture (x = 0), in radians.
    float phase;
    Color color;
};
constexpr Sheet sheets[] = {
    {-0.42f, 0.050f, 5.2f, 0.3f, {0.99f, 0.95f, 0.88f}},
    {-0.29f, 0.042f, 6.1f, 2.6f, {0.99f, 0.91f, 0.83f}},
    {-0.17f, 0.046f, 5.0f, 4.6f, {0.97f, 0.87f, 0.80f}},
    {-0.06f, 0.040f, 6.6f, 1.2f, {0.94f, 0.86f, 0.83f}},
    {0.06f, 0.044f, 5.4f, 3.3f, {0.87f, 0.86f, 0.86f}},
    {0.18f, 0.040f, 6.3f, 5.7f, {0.79f, 0.86f, 0.87f}},
    {0.30f, 0.046f, 5.1f, 2.0f, {0.71f, 0.84f, 0.86f}},
    {0.42f, 0.040f, 6.0f, 0.9f, {0.63f, 0.80f, 0.83f}},
};
constexpr Color backmost{1.0f, 0.98f, 0.94f};
constexpr Color shadow{0.72f, 0.62f, 0.62f};
/// Width of the shadow that a sheet casts on the sheets behind it, as a fraction of the picture's side.
constexpr float shadowWidth = 0.035f;
/// Width of the light edge of a sheet, as a fraction of the picture's side.
constexpr float edgeWidth = 0.004f;

/// Height (y) of the edge of each sheet at one column of pixels.
using Edges = std::array<float, std::size(sheets)>;

Edges edgesAt(float x) {
    Edges edges{};
    std::transform(std::begin(sheets), std::end(sheets), edges.begin(), [&](const Sheet& sheet) {
        const float wave = std::sin(sheet.frequency * x + sheet.phase) +
                           0.45f * std::sin(2.3f * sheet.frequency * x + 2.0f * sheet.phase);
        return sheet.height + sheet.amplitude * wave;
    });
    return edges;
}

Color paperAt(Vec2 at, const Edges& edges, float pixel) {
    Color color = backmost;
    for (std::size_t index = 0; index < edges.size(); ++index) {
        const Sheet& sheet = sheets[index];
        const float below = at.y - edges[index];
        const float nearness = std::clamp(1.0f + below / shadowWidth, 0.0f, 1.0f);
        color = mix(color, color * shadow, 0.62f * nearness * nearness * nearness);
        const Color paper = mix(sheet.color, white, 0.45f * smoothStep(edgeWidth, 0.0f, below));
        color = mix(color, paper, std::clamp(0.5f + below / pixel, 0.0f, 1.0f));
    }
    return color;
}

Painter makePaper(const View& view) {
    std::vector<Edges> edges;
    for (int column = 0; column < view.width; ++column) {
        edges.push_back(edgesAt(view.at(column, 0).x));
    }
    return [edges](Canvas& canvas) {
        const View& shown = canvas.view;
        paintAll(canvas, [&](Vec2 at) {
            const auto column = static_cast<std::size_t>((at.x + shown.halfWidth()) / shown.pixel);
            const float grain = 0.014f * noise(at * 300.0f, 3);
            const float fibres = 0.010f * noise({at.x * 60.0f, at.y * 190.0f}, 9);
            return paperAt(at, edges[column], shown.pixel) * (1.0f + grain + fibres);
        });
    };
}

}  // namespace

hostkit::Image paintPaper(int width, int height) {
    return paint(makePaper, width, height);
}

}  // namespace paintings
