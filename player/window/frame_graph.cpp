#include "player/window/frame_graph.h"

#include <imgui.h>

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace player {
namespace {

struct Share {
    const char* name;
    float FrameTimes::*time;
    ImU32 color;
};
constexpr Share shares[] = {
    {"water", &FrameTimes::water, IM_COL32(90, 170, 255, 255)},
    {"solver", &FrameTimes::solverWait, IM_COL32(255, 140, 90, 255)},
    {"GL", &FrameTimes::gl, IM_COL32(120, 220, 120, 255)},
};
constexpr float minBars = 60.0f;
constexpr float sixtieth = 1000.0f / 60.0f;

float whole(const FrameTimes& frame) {
    return frame.water + frame.solverWait + frame.gl;
}

/// Returns the time in ms that corresponds to the full height of the graph: a round number that no frame exceeds.
float fullScale(std::span<const FrameTimes> times) {
    float longest = 0.0f;
    for (const FrameTimes& frame : times) {
        longest = std::max(longest, whole(frame));
    }
    constexpr float steps[] = {2, 5, 10, 20, 50, 100, 200, 500};
    const float* step = std::ranges::lower_bound(steps, longest);
    return step == std::end(steps) ? longest : *step;
}

/// Draws one stacked bar per frame, the newest at the right.
void drawBars(ImDrawList& list, std::span<const FrameTimes> times, ImVec2 corner, ImVec2 size,
              float full) {
    const auto count = static_cast<float>(times.size());
    const float barWidth = size.x / std::max(count, minBars);
    float x = corner.x + size.x - count * barWidth;
    for (const FrameTimes& frame : times) {
        float bottom = corner.y + size.y;
        for (const Share& share : shares) {
            const float top = bottom - frame.*share.time / full * size.y;
            list.AddRectFilled(ImVec2(x, top), ImVec2(x + barWidth, bottom), share.color);
            bottom = top;
        }
        x += barWidth;
    }
}

void drawMeans(std::span<const FrameTimes> times) {
    for (const Share& share : shares) {
        float sum = 0.0f;
        for (const FrameTimes& frame : times) {
            sum += frame.*share.time;
        }
        ImGui::TextColored(ImGui::ColorConvertU32ToFloat4(share.color), "%s %.1f", share.name,
                           static_cast<double>(sum) / static_cast<double>(times.size()));
        ImGui::SameLine();
    }
    ImGui::TextUnformatted("ms");
}

}  // namespace

void drawFrameGraph(std::span<const FrameTimes> times) {
    if (times.empty()) {
        return;
    }
    const float em = ImGui::GetFontSize();
    const ImVec2 corner = ImGui::GetCursorScreenPos();
    const ImVec2 size(std::max(ImGui::GetContentRegionAvail().x, 1.0f), 4.0f * em);
    const float full = fullScale(times);
    ImDrawList& list = *ImGui::GetWindowDrawList();
    list.AddRectFilled(corner, ImVec2(corner.x + size.x, corner.y + size.y),
                       ImGui::GetColorU32(ImGuiCol_FrameBg));
    drawBars(list, times, corner, size, full);
    if (full > sixtieth) {
        const float y = corner.y + size.y * (1.0f - sixtieth / full);
        list.AddLine(ImVec2(corner.x, y), ImVec2(corner.x + size.x, y),
                     IM_COL32(255, 255, 255, 160), em / 12.0f);
    }
    char text[16];
    std::snprintf(text, sizeof text, "%.0f ms", static_cast<double>(full));
    const ImVec2 place(corner.x + 0.3f * em, corner.y + 0.1f * em);
    const ImVec2 extent = ImGui::CalcTextSize(text);
    list.AddRectFilled(place, ImVec2(place.x + extent.x, place.y + extent.y),
                       IM_COL32(0, 0, 0, 130));
    list.AddText(place, IM_COL32(255, 255, 255, 255), text);
    ImGui::Dummy(size);
    drawMeans(times);
}

}  // namespace player
