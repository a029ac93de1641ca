#include "player/draw/font_scale.h"

#include <imgui.h>

#include <cmath>
#include <filesystem>
#include <system_error>

namespace player {
namespace {

/// Font of the package fonts-dejavu-core.
constexpr const char* fontFile = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
constexpr float fontPixels = 15.0f;
/// Range of the code points in the font: European letters, for the names of presets. The list ends with 0.
constexpr ImWchar glyphRange[] = {0x20, 0x17f, 0};

/// Colour of one kind of ImGui element. The contrast between text and its background is at least 7 to 1.
struct Shade {
    ImGuiCol part;
    ImU32 color;
};
constexpr Shade shades[] = {
    {ImGuiCol_Text, IM_COL32(242, 247, 255, 255)},
    {ImGuiCol_WindowBg, IM_COL32(13, 18, 26, 224)},
    {ImGuiCol_PopupBg, IM_COL32(13, 18, 26, 247)},
    {ImGuiCol_Border, IM_COL32(115, 140, 166, 89)},
    {ImGuiCol_TitleBg, IM_COL32(18, 28, 41, 255)},
    {ImGuiCol_TitleBgActive, IM_COL32(20, 41, 66, 255)},
    {ImGuiCol_TitleBgCollapsed, IM_COL32(18, 28, 41, 224)},
    {ImGuiCol_FrameBg, IM_COL32(44, 53, 65, 255)},
    {ImGuiCol_FrameBgHovered, IM_COL32(56, 68, 84, 255)},
    {ImGuiCol_FrameBgActive, IM_COL32(62, 76, 96, 255)},
    {ImGuiCol_Header, IM_COL32(28, 51, 76, 255)},
    {ImGuiCol_HeaderHovered, IM_COL32(41, 74, 110, 255)},
    {ImGuiCol_HeaderActive, IM_COL32(48, 87, 128, 255)},
    {ImGuiCol_Button, IM_COL32(41, 66, 94, 255)},
    {ImGuiCol_ButtonHovered, IM_COL32(51, 92, 133, 255)},
    {ImGuiCol_ButtonActive, IM_COL32(61, 112, 163, 255)},
    {ImGuiCol_SliderGrab, IM_COL32_BLACK_TRANS},  // the panel draws its own sliders
    {ImGuiCol_SliderGrabActive, IM_COL32_BLACK_TRANS},
    {ImGuiCol_CheckMark, IM_COL32(115, 204, 255, 255)},
};

void setStyle(float scale) {
    ImGuiStyle style;
    ImGui::StyleColorsDark(&style);
    for (const Shade& shade : shades) {
        style.Colors[shade.part] = ImGui::ColorConvertU32ToFloat4(shade.color);
    }
    style.WindowRounding = 6.0f;
    style.FrameRounding = style.PopupRounding = style.GrabRounding = 3.0f;
    style.WindowPadding = ImVec2(7.0f, 7.0f);
    style.FramePadding = ImVec2(6.0f, 3.0f);
    style.ItemSpacing = ImVec2(5.0f, 4.0f);
    style.ScrollbarSize = 12.0f;
    style.GrabMinSize = 1.0f;
    style.ScaleAllSizes(scale);
    ImGui::GetStyle() = style;
}

void setFont(float pixels) {
    ImFontAtlas& atlas = *ImGui::GetIO().Fonts;
    atlas.Clear();
    std::error_code ignored;
    ImFontConfig config;
    config.SizePixels = pixels;
    if (std::filesystem::exists(fontFile, ignored)) {
        atlas.AddFontFromFileTTF(fontFile, pixels, &config, glyphRange);
    } else {
        atlas.AddFontDefault(&config);
    }
}

}  // namespace

void applyFontScale(const FontScale& scale) {
    setStyle(scale.pixels / scale.density);
    setFont(std::round(fontPixels * scale.pixels));
    ImGui::GetIO().FontGlobalScale = 1.0f / scale.density;
}

}  // namespace player
