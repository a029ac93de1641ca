#include "player/window/panel.h"

#include <imgui.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>

namespace player {
namespace {

/// The panel's switches, each a command as its key.
struct Switch {
    const char* words;
    Command command;
    bool View::*state;
};
constexpr Switch switches[] = {
    {"pause", Command::pause, &View::paused},
    {"velocity field", Command::velocityOverlay, &View::velocity},
    {"ink density", Command::inkOverlay, &View::ink},
    {"attract mode", Command::attract, &View::attract},
    {"film", Command::film, &View::filming},
    {"record gesture", Command::record, &View::recording},
};
struct Button {
    const char* words;
    Command command;
};
constexpr Button buttons[] = {
    {"step", Command::step},
    {"clear ink", Command::clearInk},
    {"screenshot", Command::screenshot},
    {"save preset", Command::savePreset},
    {"lose context", Command::loseContext},
    {"help", Command::help},
};

template <std::size_t count>
void sliders(Settings& settings, const SettingField<float> (&fields)[count]) {
    for (const SettingField<float>& field : fields) {
        ImGui::SliderFloat(field.words, &(settings.*field.member), field.least, field.most, "%.3f",
                           ImGuiSliderFlags_AlwaysClamp);
    }
}

void inkControls(Settings& settings) {
    ImGui::ColorEdit3("ink", settings.ink.data());
    for (const NamedInk& ink : inkPalette) {
        const ImVec4 color(ink.color[0], ink.color[1], ink.color[2], 1.0f);
        if (ImGui::ColorButton(ink.name, color, 0, ImVec2(22, 22))) {
            settings.ink = ink.color;
        }
        ImGui::SameLine();
    }
    ImGui::NewLine();
}

void presetControls(const Panel& panel) {
    if (!ImGui::BeginCombo("preset", "choose")) {
        return;
    }
    for (const NamedPreset& preset : panel.looks.presets()) {
        if (ImGui::Selectable(preset.name.c_str())) {
            panel.requests.preset = preset.file;
        }
    }
    ImGui::EndCombo();
}

void switchControls(const Panel& panel) {
    for (const Switch& one : switches) {
        bool on = panel.view.*one.state;
        if (ImGui::Checkbox(one.words, &on)) {
            panel.requests.commands.push_back(one.command);
        }
    }
    for (std::size_t at = 0; at < std::size(buttons); ++at) {
        if (at % 3 != 0) {
            ImGui::SameLine();
        }
        if (ImGui::Button(buttons[at].words)) {
            panel.requests.commands.push_back(buttons[at].command);
        }
    }
}

struct Share {
    const char* name;
    float FrameTimes::*time;
    ImU32 color;
};
constexpr Share shares[] = {
    {"water", &FrameTimes::water, IM_COL32(90, 170, 255, 255)},
    {"solver wait", &FrameTimes::solverWait, IM_COL32(255, 190, 70, 255)},
    {"GL", &FrameTimes::gl, IM_COL32(120, 220, 120, 255)},
};

/// Stacked bars, one a frame; the line is a 60th of a second.
void timeGraph(std::span<const FrameTimes> times) {
    constexpr float full = 33.3f;
    constexpr float height = 60.0f;
    const ImVec2 corner = ImGui::GetCursorScreenPos();
    const float width = std::max(ImGui::GetContentRegionAvail().x, 1.0f);
    const float barWidth = width / static_cast<float>(std::max<std::size_t>(times.size(), 1));
    ImDrawList& list = *ImGui::GetWindowDrawList();
    list.AddRectFilled(corner, ImVec2(corner.x + width, corner.y + height), IM_COL32(0, 0, 0, 120));
    float x = corner.x;
    for (const FrameTimes& frame : times) {
        float bottom = corner.y + height;
        for (const Share& share : shares) {
            const float top = std::max(corner.y, bottom - frame.*share.time / full * height);
            list.AddRectFilled(ImVec2(x, top), ImVec2(x + barWidth, bottom), share.color);
            bottom = top;
        }
        x += barWidth;
    }
    const float middle = corner.y + height / 2;
    list.AddLine(ImVec2(corner.x, middle), ImVec2(corner.x + width, middle),
                 IM_COL32(255, 255, 255, 90));
    ImGui::Dummy(ImVec2(width, height));
}

void timeControls(std::span<const FrameTimes> times) {
    timeGraph(times);
    if (times.empty()) {
        return;
    }
    for (const Share& share : shares) {
        float sum = 0.0f;
        for (const FrameTimes& frame : times) {
            sum += frame.*share.time;
        }
        ImGui::TextColored(ImGui::ColorConvertU32ToFloat4(share.color), "%s %.2f ms", share.name,
                           static_cast<double>(sum) / static_cast<double>(times.size()));
        ImGui::SameLine();
    }
    ImGui::NewLine();
}

}  // namespace

void drawPanel(const Panel& panel) {
    const ImVec2 screen = ImGui::GetIO().DisplaySize;
    ImGui::SetNextWindowPos(ImVec2(8, 8), ImGuiCond_FirstUseEver);
    ImGui::SetNextWindowSize(
        ImVec2(std::min(330.0f, screen.x - 16), std::min(690.0f, screen.y - 16)),
        ImGuiCond_FirstUseEver);
    ImGui::SetNextWindowBgAlpha(0.8f);
    if (ImGui::Begin("Velmora")) {
        ImGui::PushItemWidth(ImGui::GetContentRegionAvail().x * 0.6f);
        presetControls(panel);
        ImGui::Separator();
        sliders(panel.settings, waterFields);
        for (const SettingField<int>& field : countFields) {
            ImGui::SliderInt(field.words, &(panel.settings.*field.member), field.least, field.most,
                             "%d", ImGuiSliderFlags_AlwaysClamp);
        }
        ImGui::Separator();
        inkControls(panel.settings);
        sliders(panel.settings, fingerFields);
        for (const SettingField<bool>& field : switchFields) {
            ImGui::Checkbox(field.words, &(panel.settings.*field.member));
        }
        ImGui::Separator();
        switchControls(panel);
        timeControls(panel.times);
        ImGui::PopItemWidth();
    }
    ImGui::End();
}

void drawHelp() {
    const ImVec2 screen = ImGui::GetIO().DisplaySize;
    ImGui::SetNextWindowPos(ImVec2(screen.x / 2, screen.y / 2), ImGuiCond_Always,
                            ImVec2(0.5f, 0.5f));
    ImGui::SetNextWindowSize(ImVec2(std::min(430.0f, screen.x - 16), 0.0f));
    ImGui::SetNextWindowBgAlpha(0.85f);
    if (ImGui::Begin("Keys", nullptr, ImGuiWindowFlags_NoResize | ImGuiWindowFlags_NoCollapse)) {
        ImGui::TextWrapped("%s", keyHelp().c_str());
    }
    ImGui::End();
}

void drawMark(const char* word, std::chrono::seconds time, int row) {
    char text[64];
    std::snprintf(text, sizeof text, "%s %d:%02d", word, static_cast<int>(time.count() / 60),
                  static_cast<int>(time.count() % 60));
    const float line = ImGui::GetTextLineHeight();
    const float radius = 0.45f * line;
    const ImVec2 size = ImGui::CalcTextSize(text);
    const ImVec2 corner(ImGui::GetIO().DisplaySize.x - size.x - line,
                        line + 2.0f * line * static_cast<float>(row));
    ImDrawList& list = *ImGui::GetForegroundDrawList();
    list.AddRectFilled(ImVec2(corner.x - 2.0f * line, corner.y - 0.3f * line),
                       ImVec2(corner.x + size.x + 0.5f * line, corner.y + 1.3f * line),
                       IM_COL32(0, 0, 0, 150), radius);
    list.AddCircleFilled(ImVec2(corner.x - line, corner.y + line / 2), radius,
                         IM_COL32(230, 30, 30, 255));
    list.AddText(corner, IM_COL32(255, 255, 255, 255), text);
}

void drawNotice(const std::string& line) {
    const ImVec2 screen = ImGui::GetIO().DisplaySize;
    ImGui::SetNextWindowPos(ImVec2(screen.x / 2, screen.y - 12), ImGuiCond_Always,
                            ImVec2(0.5f, 1.0f));
    ImGui::SetNextWindowBgAlpha(0.7f);
    if (ImGui::Begin("notice", nullptr,
                     ImGuiWindowFlags_NoDecoration | ImGuiWindowFlags_NoInputs |
                         ImGuiWindowFlags_AlwaysAutoResize | ImGuiWindowFlags_NoFocusOnAppearing)) {
        ImGui::PushTextWrapPos(screen.x - 40);
        ImGui::TextUnformatted(line.c_str());
        ImGui::PopTextWrapPos();
    }
    ImGui::End();
}

}  // namespace player
