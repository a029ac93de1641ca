#include "player/draw/draw_overlays.h"

#include <imgui.h>

#include "app/flow_lines.h"

namespace player {
namespace {

void drawLine(ImDrawList& list, const app::FlowLine& line) {
    const auto [red, green, blue] = line.color;
    list.AddLine(ImVec2(line.x, line.y), ImVec2(line.endX, line.endY),
                 ImGui::GetColorU32(ImVec4(red, green, blue, line.opacity)), app::flowLineWidth);
    // A square needs fewer vertices than a circle. This matters because the lines can fill the screen, and a draw list
    // of ImGui holds at most 65536 vertices.
    constexpr float reach = app::flowDotSide / 2;
    constexpr float shade = app::flowDotShade;
    list.AddRectFilled(ImVec2(line.x - reach, line.y - reach),
                       ImVec2(line.x + reach, line.y + reach),
                       ImGui::GetColorU32(ImVec4(shade, shade, shade, line.opacity)));
}

void drawVelocity(const app::VelocityField& field) {
    const ImVec2 screen = ImGui::GetIO().DisplaySize;
    for (const app::FlowLine& line :
         app::flowLines(field.bytes, field.columns, field.rows, screen.x, screen.y)) {
        drawLine(*ImGui::GetBackgroundDrawList(), line);
    }
}

}  // namespace

void drawOverlays(Overlays overlays, const app::EffectProbe& probe, Canvas& canvas,
                  app::Size screen) {
    if (overlays.ink && probe.inkTexture() != 0) {
        canvas.showDensity(probe.inkTexture(), screen);
    }
    if (overlays.velocity) {
        drawVelocity(probe.velocity());
    }
}

}  // namespace player
