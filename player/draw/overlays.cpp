#include "player/draw/overlays.h"

#include <imgui.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace player {
namespace {

constexpr int mostAcross = 30;
/// Shorter flows are noise of the encoding.
constexpr float leastSpeed = 0.25f;
constexpr float mostLength = 2.5f;  // spacings
constexpr float dotSide = 3.0f;

/// A component, split over a high and a low byte as 255 * high + low with an offset of 127.
float decode(const std::uint8_t* bytes) {
    return static_cast<float>(bytes[0]) + static_cast<float>(bytes[1]) / 255.0f - 127.0f;
}

void drawFlow(ImDrawList& list, ImVec2 from, float right, float up, float spacing) {
    const float speed = std::hypot(right, up);
    if (speed < leastSpeed) {
        return;
    }
    const float length = spacing * std::min(0.3f + 0.12f * speed, mostLength) / speed;
    const ImVec2 to(from.x + right * length, from.y - up * length);
    const float heat = std::min(speed / 20.0f, 1.0f);
    const float strength = std::min(0.2f + speed / 6.0f, 0.9f);  // little where little moves
    list.AddLine(from, to, ImGui::GetColorU32(ImVec4(1.0f, 1.0f - 0.8f * heat, 0.2f, strength)),
                 2.0f);
    // Not a circle: a list holds 65536 vertices, and strokes may fill the screen.
    list.AddRectFilled(ImVec2(from.x - dotSide / 2, from.y - dotSide / 2),
                       ImVec2(from.x + dotSide / 2, from.y + dotSide / 2),
                       ImGui::GetColorU32(ImVec4(0.1f, 0.1f, 0.1f, strength)));
}

void drawVelocity(const hostkit::VelocityField& field) {
    if (field.bytes.empty()) {
        return;
    }
    const ImVec2 screen = ImGui::GetIO().DisplaySize;
    const int stride = (std::max(field.columns, field.rows * 9 / 16) + mostAcross - 1) / mostAcross;
    const float cellWidth = screen.x / static_cast<float>(field.columns);
    const float cellHeight = screen.y / static_cast<float>(field.rows);
    for (int row = stride / 2; row < field.rows; row += stride) {
        for (int column = stride / 2; column < field.columns; column += stride) {
            const std::uint8_t* cell =
                field.bytes.data() + 4 * (std::ptrdiff_t{row} * field.columns + column);
            const ImVec2 place((static_cast<float>(column) + 0.5f) * cellWidth,
                               screen.y - (static_cast<float>(row) + 0.5f) * cellHeight);
            drawFlow(*ImGui::GetBackgroundDrawList(), place, decode(cell), decode(cell + 2),
                     static_cast<float>(stride) * cellWidth);
        }
    }
}

}  // namespace

void drawOverlays(Overlays overlays, const hostkit::EffectProbe& probe, Canvas& canvas,
                  app::Size screen) {
    if (overlays.ink && probe.inkTexture() != 0) {
        canvas.showDensity(probe.inkTexture(), screen);
    }
    if (overlays.velocity) {
        drawVelocity(probe.velocity());
    }
}

}  // namespace player
