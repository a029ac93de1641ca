#include "player/window/marks.h"

#include <imgui.h>

#include <cstdio>

namespace player {
namespace {

std::string textOf(const Mark& mark) {
    if (!mark.time) {
        return mark.label;
    }
    char time[32];
    std::snprintf(time, sizeof time, " %d:%02d", static_cast<int>(mark.time->count() / 60),
                  static_cast<int>(mark.time->count() % 60));
    return mark.label + time;
}

/// Draws a symbol into a square with the side of a line of text.
void drawSymbol(ImDrawList& list, MarkSymbol symbol, ImVec2 corner, float side) {
    const auto at = [&](float x, float y) {
        return ImVec2(corner.x + x * side, corner.y + y * side);
    };
    switch (symbol) {
        case MarkSymbol::record:
            list.AddCircleFilled(at(0.5f, 0.5f), 0.45f * side, IM_COL32(230, 30, 30, 255));
            return;
        case MarkSymbol::play:
            list.AddTriangleFilled(at(0.15f, 0.1f), at(0.15f, 0.9f), at(0.85f, 0.5f),
                                   IM_COL32_WHITE);
            return;
        case MarkSymbol::pause:
            list.AddRectFilled(at(0.15f, 0.1f), at(0.4f, 0.9f), IM_COL32_WHITE);
            list.AddRectFilled(at(0.6f, 0.1f), at(0.85f, 0.9f), IM_COL32_WHITE);
            return;
    }
}

/// Draws an on-screen indicator into the current ImGui window. The indicator of a pause has no stop button. Every other
/// indicator has a stop button, drawn as a square. Returns true if the user clicked the indicator.
bool drawMark(const Mark& mark) {
    const std::string text = textOf(mark);
    const float line = ImGui::GetTextLineHeight();
    const bool stops = mark.symbol != MarkSymbol::pause;
    const ImVec2 corner = ImGui::GetCursorScreenPos();
    const ImVec2 size(ImGui::CalcTextSize(text.c_str()).x + (stops ? 3.6f : 2.4f) * line,
                      1.6f * line);
    const bool clicked = ImGui::InvisibleButton("mark", size);
    ImDrawList& list = *ImGui::GetWindowDrawList();
    const int shade = ImGui::IsItemHovered() ? 210 : 150;
    const ImVec2 end(corner.x + size.x, corner.y + size.y);
    list.AddRectFilled(corner, end, IM_COL32(0, 0, 0, shade), 0.45f * line);
    const float top = corner.y + 0.3f * line;
    drawSymbol(list, mark.symbol, ImVec2(corner.x + 0.5f * line, top), line);
    list.AddText(ImVec2(corner.x + 1.9f * line, top), IM_COL32_WHITE, text.c_str());
    if (stops) {
        list.AddRectFilled(ImVec2(end.x - 1.1f * line, top + 0.2f * line),
                           ImVec2(end.x - 0.5f * line, top + 0.8f * line), IM_COL32_WHITE);
    }
    if (ImGui::IsItemHovered()) {
        ImGui::SetTooltip("%s", mark.hint);
    }
    return clicked;
}

}  // namespace

void drawMarks(std::span<const Mark> marks, Requests& requests) {
    if (marks.empty()) {
        return;
    }
    const float gap = 0.5f * ImGui::GetTextLineHeight();
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, ImVec2(0.0f, 0.0f));
    for (std::size_t row = 0; row < marks.size(); ++row) {
        const float top = gap + 2.0f * ImGui::GetTextLineHeight() * static_cast<float>(row);
        ImGui::SetNextWindowPos(ImVec2(ImGui::GetIO().DisplaySize.x - gap, top), ImGuiCond_Always,
                                ImVec2(1.0f, 0.0f));
        constexpr ImGuiWindowFlags flags =
            ImGuiWindowFlags_NoDecoration | ImGuiWindowFlags_NoBackground |
            ImGuiWindowFlags_AlwaysAutoResize | ImGuiWindowFlags_NoFocusOnAppearing |
            ImGuiWindowFlags_NoNav;
        if (ImGui::Begin(("##mark" + std::to_string(row)).c_str(), nullptr, flags) &&
            drawMark(marks[row])) {
            requests.commands.push_back(marks[row].end);
        }
        ImGui::End();
    }
    ImGui::PopStyleVar();
}

}  // namespace player
