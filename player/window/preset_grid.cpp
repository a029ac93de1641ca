#include "player/window/preset_grid.h"

#include <GLES2/gl2.h>
#include <imgui.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "desktop/preset.h"

namespace player {

using desktop::NamedPreset;

namespace {

/// Draws a square thumbnail with the preset's name below it. Returns true if it was clicked.
bool presetButton(const NamedPreset& preset, GLuint thumbnail, float side, bool chosen) {
    const ImVec2 corner = ImGui::GetCursorScreenPos();
    const ImVec2 end(corner.x + side, corner.y + side);
    ImGui::PushID(preset.file.c_str());
    const float line = ImGui::GetTextLineHeight();
    const bool clicked = ImGui::Selectable("##preset", chosen, 0, ImVec2(side, side + line));
    ImGui::PopID();
    ImDrawList& list = *ImGui::GetWindowDrawList();
    const float rounding = 0.3f * line;
    if (thumbnail != 0) {
        const auto texture = reinterpret_cast<ImTextureID>(static_cast<std::uintptr_t>(thumbnail));
        list.AddImageRounded(texture, corner, end, ImVec2(0, 0), ImVec2(1, 1), IM_COL32_WHITE,
                             rounding);
    } else {
        list.AddRectFilled(corner, end, ImGui::GetColorU32(ImGuiCol_FrameBg), rounding);
    }
    const ImVec4 within(corner.x, end.y, end.x, end.y + line);
    const float free = side - ImGui::CalcTextSize(preset.name.c_str()).x;
    list.AddText(nullptr, 0.0f, ImVec2(corner.x + std::max(0.0f, std::floor(free / 2)), end.y),
                 ImGui::GetColorU32(ImGuiCol_Text), preset.name.c_str(), nullptr, 0.0f, &within);
    return clicked;
}

}  // namespace

const NamedPreset* drawPresetGrid(const PresetList& presetList, Thumbnails& thumbnails,
                                  float width) {
    const float spacing = ImGui::GetStyle().ItemSpacing.x;
    const float minWidth = 5.0f * ImGui::GetFontSize();
    const int columns = std::max(1, static_cast<int>((width + spacing) / (minWidth + spacing)));
    const float side = std::floor((width + spacing) / static_cast<float>(columns) - spacing);
    const NamedPreset* clicked = nullptr;
    int column = 0;
    for (const NamedPreset& preset : presetList.presets()) {
        if (column > 0) {
            ImGui::SameLine();
        }
        column = (column + 1) % columns;
        if (presetButton(preset, thumbnails.of(preset.file), side,
                         preset.name == presetList.name())) {
            clicked = &preset;
        }
    }
    return clicked;
}

}  // namespace player
