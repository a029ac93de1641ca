#include "player/draw/draw_overlays.h"

#include <imgui.h>

#include "app/flow_lines.h"

namespace player {
namespace {

constexpr float dotSide = 3.0f;

void drawLine(ImDrawList& list, const app::FlowLine& line) {
    const ImVec4 color(1.0f, 1.0f - 0.8f * line.heat, 0.2f, line.strength);
    list.AddLine(ImVec2(line.x, line.y), ImVec2(line.endX, line.endY), ImGui::GetColorU32(color),
                 2.0f);
    // A square needs fewer vertices than a circle. A draw list holds 65536, and the lines may fill the screen.
    list.AddRectFilled(ImVec2(line.x - dotSide / 2, line.y - dotSide / 2),
                       ImVec2(line.x + dotSide / 2, line.y + dotSide / 2),
                       ImGui::GetColorU32(ImVec4(0.1f, 0.1f, 0.1f, line.strength)));
}

void drawVelocity(const hostkit::VelocityField& field) {
    const ImVec2 screen = ImGui::GetIO().DisplaySize;
    for (const app::FlowLine& line :
         app::flowLines(field.bytes, field.columns, field.rows, screen.x, screen.y)) {
        drawLine(*ImGui::GetBackgroundDrawList(), line);
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
