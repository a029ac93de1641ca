#include "app/flow_lines.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace app {
namespace {

/// Approximate maximum number of flow lines along the width of the screen.
constexpr int maxLinesAcross = 30;
/// Minimum flow speed for which a line is drawn, in the unit that `decode` returns. Slower flow is hidden in the noise
/// of the 8-bit encoding.
constexpr float minSpeed = 0.25f;
/// Maximum length of a line, as a multiple of the distance between the starts of two neighbouring lines.
constexpr float maxLength = 2.5f;

/// Decodes a velocity component. The first byte holds the integer part plus 127; the second holds the fraction in units
/// of 1/255.
float decode(const std::uint8_t* bytes) {
    return static_cast<float>(bytes[0]) + static_cast<float>(bytes[1]) / 255.0f - 127.0f;
}

}  // namespace

std::vector<FlowLine> flowLines(std::span<const std::uint8_t> rgba, int columns, int rows,
                                float width, float height) {
    std::vector<FlowLine> lines;
    if (rgba.empty()) {
        return lines;
    }
    const int stride = (std::max(columns, rows * 9 / 16) + maxLinesAcross - 1) / maxLinesAcross;
    const float cellWidth = width / static_cast<float>(columns);
    const float cellHeight = height / static_cast<float>(rows);
    const float spacing = static_cast<float>(stride) * cellWidth;
    for (int row = stride / 2; row < rows; row += stride) {
        for (int column = stride / 2; column < columns; column += stride) {
            const std::uint8_t* cell = rgba.data() + 4 * (std::ptrdiff_t{row} * columns + column);
            const float right = decode(cell);
            const float up = decode(cell + 2);
            const float speed = std::hypot(right, up);
            if (speed < minSpeed) {
                continue;
            }
            const float length = spacing * std::min(0.3f + 0.12f * speed, maxLength) / speed;
            const float x = (static_cast<float>(column) + 0.5f) * cellWidth;
            const float y = height - (static_cast<float>(row) + 0.5f) * cellHeight;
            const float heat = std::min(speed / 20.0f, 1.0f);
            lines.push_back({x,
                             y,
                             x + right * length,
                             y - up * length,
                             {1.0f, 1.0f - 0.8f * heat, 0.2f},
                             std::min(0.2f + speed / 6.0f, 0.9f)});
        }
    }
    return lines;
}

}  // namespace app
