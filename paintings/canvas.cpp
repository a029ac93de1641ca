#include "paintings/canvas.h"

#include <cstdint>
#include <initializer_list>

#include "paintings/noise.h"

namespace paintings {
namespace {

constexpr int rowsPerCanvas = 32;
constexpr std::uint32_t ditherSeed = 5;

/// Returns a colour channel as a byte, 0 to 255. The `offset`, 0 to 1, decides which of the two nearest bytes is used.
/// If `offset` varies from pixel to pixel, a soft gradient has no visible steps.
std::uint8_t dithered(float channel, float offset) {
    return static_cast<std::uint8_t>(std::clamp(channel * 255.0f + offset, 0.0f, 255.0f));
}

std::uint8_t* writePixels(const Canvas& canvas, std::uint8_t* to) {
    const int pixels = canvas.rows * canvas.view.width;
    for (int pixel = 0; pixel < pixels; ++pixel) {
        const Color& color = canvas.colors[static_cast<std::size_t>(pixel)];
        const float offset = randomAt(pixel, canvas.firstRow, ditherSeed);
        for (const float channel : {color.red, color.green, color.blue}) {
            *to++ = dithered(channel, offset);
        }
        *to++ = 255;
    }
    return to;
}

}  // namespace

hostkit::Image paint(Painter (*makePainter)(const View&), int width, int height) {
    const View view{width, height, 1.0f / static_cast<float>(std::max(width, height))};
    const Painter painter = makePainter(view);
    const auto pixels = [&](int rows) {
        return static_cast<std::size_t>(width) * static_cast<std::size_t>(rows);
    };
    hostkit::Image image{width, height, std::vector<std::uint8_t>(4 * pixels(height))};
    std::uint8_t* to = image.rgba.data();
    Canvas canvas{view, 0, 0, std::vector<Color>(pixels(rowsPerCanvas))};
    for (; canvas.firstRow < height; canvas.firstRow += rowsPerCanvas) {
        canvas.rows = std::min(rowsPerCanvas, height - canvas.firstRow);
        painter(canvas);
        to = writePixels(canvas, to);
    }
    return image;
}

}  // namespace paintings
