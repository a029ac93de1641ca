#include "player/window/preset_grid.h"

#include <GLES2/gl2.h>
#include <imgui.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <initializer_list>

#include "desktop/preset.h"
#include "player/window/keys.h"

namespace player {

using desktop::NamedPreset;

namespace {

/// Draws a square thumbnail with the preset's name below it. Returns true if it was clicked.
bool presetButton(const NamedPreset& preset, GLuint thumbnail, float side, bool chosen) {
    const ImVec2 corner = ImGui::GetCursorScreenPos();
    const ImVec2 end(corner.x + side, corner.y + side);
    const float line = ImGui::GetTextLineHeight();
    const bool clicked = ImGui::Selectable(
        "##preset", chosen, ImGuiSelectableFlags_AllowItemOverlap, ImVec2(side, side + line));
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

/// Draws a button with three dots in the upper right corner of a tile. A click on the button opens the menu of the
/// preset. A click on the tile with the right mouse button also opens the menu.
void menuOf(const NamedPreset& preset, ImVec2 corner, float side, Requests& requests) {
    if (ImGui::IsItemClicked(ImGuiMouseButton_Right)) {
        ImGui::OpenPopup("menu");
    }
    const float width = ImGui::CalcTextSize("...").x + 2.0f * ImGui::GetStyle().FramePadding.x;
    ImGui::SetCursorScreenPos(ImVec2(corner.x + side - width, corner.y));
    if (ImGui::SmallButton("...")) {
        ImGui::OpenPopup("menu");
    }
    if (ImGui::BeginPopup("menu")) {
        for (const Command command : {Command::renamePreset, Command::deletePreset}) {
            if (ImGui::MenuItem(textOf(command).label)) {
                requests.presetCommands.push_back({command, preset.file});
            }
        }
        ImGui::EndPopup();
    }
}

}  // namespace

void drawPresetGrid(const PresetList& presetList, Thumbnails& thumbnails, float width,
                    Requests& requests) {
    const float spacing = ImGui::GetStyle().ItemSpacing.x;
    const float minWidth = 5.0f * ImGui::GetFontSize();
    const int columns = std::max(1, static_cast<int>((width + spacing) / (minWidth + spacing)));
    const float side = std::floor((width + spacing) / static_cast<float>(columns) - spacing);
    int column = 0;
    for (const NamedPreset& preset : presetList.presets()) {
        if (column > 0) {
            ImGui::SameLine();
        }
        column = (column + 1) % columns;
        const ImVec2 corner = ImGui::GetCursorScreenPos();
        ImGui::PushID(preset.file.c_str());
        ImGui::BeginGroup();
        if (presetButton(preset, thumbnails.of(preset.file), side,
                         preset.name == presetList.name())) {
            requests.preset = preset.file;
        }
        if (presetList.isOwn(preset.file)) {
            menuOf(preset, corner, side, requests);
        }
        ImGui::EndGroup();
        ImGui::PopID();
    }
}

}  // namespace player
