#include "player/window/panel.h"

#include <imgui.h>
#include <imgui_internal.h>

#include <algorithm>
#include <cfloat>
#include <cstdio>
#include <string>
#include <type_traits>
#include <utility>

#include "app/labels.h"
#include "player/window/frame_graph.h"
#include "player/window/gesture_list.h"
#include "player/window/keys.h"
#include "player/window/preset_grid.h"

namespace player {

namespace {

/// Maximum fraction of the window's width and height that the panel covers.
constexpr float maxPart = 0.6f;
/// Colour of the preset's name after the user has changed a setting.
constexpr ImU32 changedColor = IM_COL32(255, 190, 70, 255);

/// Sections of the panel that contain commands. The sections that contain sliders come from the table of settings.
enum class Place { preset, ownPreset, ink, view, save, developer };

/// Check box of the panel. A click on the check box runs `command`, like the command's key.
struct Switch {
    Place place;
    Command command;
    bool View::*state;
};
constexpr Switch switches[] = {
    {Place::view, Command::pause, &View::paused},
    {Place::view, Command::attract, &View::attract},
    {Place::save, Command::film, &View::filming},
    {Place::save, Command::record, &View::recording},
    {Place::developer, Command::velocityOverlay, &View::velocity},
    {Place::developer, Command::inkOverlay, &View::ink},
};

struct Button {
    Place place;
    Command command;
};
constexpr Button buttons[] = {
    {Place::preset, Command::nextPreset},
    {Place::preset, Command::randomSettings},
    {Place::preset, Command::resetSettings},
    {Place::preset, Command::savePreset},
    {Place::preset, Command::undo},
    {Place::preset, Command::redo},
    {Place::ownPreset, Command::renamePreset},
    {Place::ownPreset, Command::deletePreset},
    {Place::ink, Command::inkForBackground},
    {Place::ink, Command::clearInk},
    {Place::view, Command::openFile},
    {Place::view, Command::step},
    {Place::view, Command::fullScreen},
    {Place::view, Command::help},
    {Place::save, Command::screenshot},
    {Place::save, Command::replay},
    {Place::developer, Command::loseContext},
};

/// Action of the mouse, shown in the list of keys.
struct Control {
    const char* name;
    const char* description;
};
constexpr Control pointerControls[] = {
    {"Drag", "Stir the water and release ink"},
    {"Click", "Raise a ripple and release a blot of ink"},
    {"Ctrl+click", "Type the number of a slider"},
    {"Drop a file",
     "Make a picture the background, load a preset, or play a gesture. The old picture becomes the "
     "second one."},
};

float em() {
    return ImGui::GetFontSize();
}

/// Delay of a hint, in seconds. The delay keeps hints hidden while the pointer only moves across the panel.
constexpr float hintDelay = 0.4f;

/// Shows a hint for the previous item if the pointer stays on it. The hint is below the item, or above it near the
/// lower edge of the window. The hint therefore does not cover the item's number.
void hint(const char* label) {
    const bool delayed = ImGui::IsItemHovered() && !ImGui::IsItemActive() &&
                         ImGui::GetCurrentContext()->HoveredIdTimer >= hintDelay;
    if (!delayed) {
        return;
    }
    const ImVec2 min = ImGui::GetItemRectMin();
    const ImVec2 max = ImGui::GetItemRectMax();
    const float gap = 0.3f * em();
    const bool low = max.y > 0.8f * ImGui::GetIO().DisplaySize.y;
    ImGui::SetNextWindowPos(ImVec2(min.x, low ? min.y - gap : max.y + gap), ImGuiCond_Always,
                            ImVec2(0.0f, low ? 1.0f : 0.0f));
    ImGui::BeginTooltip();
    ImGui::PushTextWrapPos(16.0f * em());
    ImGui::TextUnformatted(label);
    ImGui::PopTextWrapPos();
    ImGui::EndTooltip();
}

void hint(Command command) {
    for (const Key& key : keys()) {
        if (key.command == command) {
            hint((std::string(key.text.description) + " (" + key.name + ")").c_str());
        }
    }
}

/// Puts the next item on the current line if the line has room for an item of this width. The first item starts a new
/// line.
void flow(float width, bool first) {
    const float spacing = ImGui::GetStyle().ItemSpacing.x;
    const float right = ImGui::GetWindowPos().x + ImGui::GetWindowContentRegionMax().x;
    if (!first && ImGui::GetItemRectMax().x + spacing + width <= right) {
        ImGui::SameLine();
    }
}

const char* digits(float span) {
    return span < 1.2f ? "%.3f" : span < 10.0f ? "%.2f" : "%.1f";
}

/// Draws text with a dark shadow, so that it is readable on every background.
void drawShadowedText(ImDrawList& list, ImVec2 place, const char* text) {
    const float edge = em() / 15.0f;
    list.AddText(ImVec2(place.x + edge, place.y + edge), IM_COL32(0, 0, 0, 220), text);
    list.AddText(place, ImGui::GetColorU32(ImGuiCol_Text), text);
}

/// Draws the filled part, the label and the number over the previous slider. `part` is the filled part, 0 to 1.
void labelSlider(const char* label, const char* number, float part) {
    ImDrawList& list = *ImGui::GetWindowDrawList();
    const ImVec2 min = ImGui::GetItemRectMin();
    const ImVec2 max = ImGui::GetItemRectMax();
    const float rounding = ImGui::GetStyle().FrameRounding;
    const float edge = min.x + part * (max.x - min.x);
    const bool lit = ImGui::IsItemHovered() || ImGui::IsItemActive();
    list.AddRectFilled(min, ImVec2(edge, max.y),
                       lit ? IM_COL32(44, 96, 148, 255) : IM_COL32(36, 80, 126, 255), rounding);
    list.AddRectFilled(ImVec2(std::max(min.x, edge - em() / 7.0f), min.y), ImVec2(edge, max.y),
                       IM_COL32(85, 150, 215, 255), rounding);
    const ImVec2 padding = ImGui::GetStyle().FramePadding;
    const float width = ImGui::CalcTextSize(number).x;
    drawShadowedText(list, ImVec2(min.x + padding.x, min.y + padding.y), label);
    drawShadowedText(list, ImVec2(max.x - padding.x - width, min.y + padding.y), number);
}

template <class Value>
bool slide(const char* name, Value& value, const app::SettingField<Value>& field,
           const char* format) {
    constexpr auto kind = std::is_same_v<Value, int> ? ImGuiDataType_S32 : ImGuiDataType_Float;
    return ImGui::SliderScalar(name, kind, &value, &field.min, &field.max, format,
                               ImGuiSliderFlags_AlwaysClamp);
}

/// Draws a slider as wide as the panel, with label and number inside. A click with Ctrl edits the number.
template <class Value>
void control(const app::SettingField<Value>& field, app::Settings& settings) {
    Value& value = settings.*field.member;
    const auto span = static_cast<float>(field.max - field.min);
    const char* format = std::is_same_v<Value, int> ? "%d" : digits(span);
    const std::string name = std::string("##") + field.name;
    const bool editing = ImGui::TempInputIsActive(ImGui::GetID(name.c_str()));
    ImGui::SetNextItemWidth(-FLT_MIN);
    if (!editing) {
        ImGui::PushStyleColor(ImGuiCol_Text, IM_COL32_BLACK_TRANS);
    }
    slide(name.c_str(), value, field, format);
    if (!editing) {
        ImGui::PopStyleColor();
        char number[32];
        using Passed = std::conditional_t<std::is_same_v<Value, int>, int, double>;
        std::snprintf(number, sizeof number, format, static_cast<Passed>(value));
        labelSlider(field.label, number, static_cast<float>(value - field.min) / span);
        hint(field.hint);
    }
}

void control(const app::SettingField<bool>& field, app::Settings& settings) {
    ImGui::Checkbox(field.label, &(settings.*field.member));
    hint(field.hint);
}

template <class Value, std::size_t count>
void controls(app::Group group, const app::SettingField<Value> (&fields)[count],
              app::Settings& settings) {
    for (const app::SettingField<Value>& field : fields) {
        if (field.group == group) {
            control(field, settings);
        }
    }
}

void settingControls(app::Group group, app::Settings& settings) {
    controls(group, app::numberFields, settings);
    controls(group, app::countFields, settings);
    controls(group, app::switchFields, settings);
}

void buttonControls(Place place, Requests& requests) {
    bool first = true;
    for (const Button& button : buttons) {
        if (button.place != place) {
            continue;
        }
        const char* label = textOf(button.command).label;
        const float padding = 2.0f * ImGui::GetStyle().FramePadding.x;
        flow(ImGui::CalcTextSize(label).x + padding, std::exchange(first, false));
        if (ImGui::Button(label)) {
            requests.commands.push_back(button.command);
        }
        hint(button.command);
    }
}

void switchControls(Place place, const View& view, Requests& requests) {
    float left = 0.0f;
    for (const Switch& one : switches) {
        if (one.place != place) {
            continue;
        }
        if (left > 0.0f) {
            ImGui::SameLine(left);
        }
        left = left > 0.0f ? 0.0f : ImGui::GetWindowContentRegionMax().x / 2.0f;
        bool on = view.*one.state;
        if (ImGui::Checkbox(textOf(one.command).label, &on)) {
            requests.commands.push_back(one.command);
        }
        hint(one.command);
    }
}

void presetControls(const Panel& panel) {
    const bool changed = panel.presetList.isChanged(panel.settings);
    const bool random = panel.presetList.isRandom(panel.settings);
    const std::string name = panel.presetList.nameOf(panel.settings) + (changed ? " *" : "");
    const float width = ImGui::GetContentRegionAvail().x;
    ImGui::SetNextItemWidth(width);
    ImGui::SetNextWindowSizeConstraints(ImVec2(width, 0.0f),
                                        ImVec2(width, maxPart * ImGui::GetIO().DisplaySize.y));
    ImGui::PushStyleColor(ImGuiCol_Text,
                          changed ? changedColor : ImGui::GetColorU32(ImGuiCol_Text));
    const bool open = ImGui::BeginCombo("##preset", name.c_str());
    ImGui::PopStyleColor();
    if (open) {
        const ImGuiStyle& style = ImGui::GetStyle();
        const float inner = width - 2.0f * style.WindowPadding.x - style.ScrollbarSize;
        drawPresetGrid(panel.presetList, panel.thumbnails, inner, panel.requests);
        ImGui::EndCombo();
    } else {
        hint(random    ? "Random settings, which are not saved"
             : changed ? "The preset, with unsaved changes"
                       : "The preset");
    }
    buttonControls(Place::preset, panel.requests);
    if (!random && panel.presetList.isOwn(panel.presetList.file())) {
        buttonControls(Place::ownPreset, panel.requests);
    }
}

void inkControls(app::Settings& settings) {
    ImGui::SetNextItemWidth(-FLT_MIN);
    ImGui::ColorEdit3("##ink", settings.ink.data());
    const float side = ImGui::GetFrameHeight();
    bool first = true;
    for (const app::NamedInk& ink : app::inkPalette) {
        const ImVec4 color(ink.color[0], ink.color[1], ink.color[2], 1.0f);
        flow(side, std::exchange(first, false));
        if (ImGui::ColorButton(ink.name, color, 0, ImVec2(side, side))) {
            settings.ink = ink.color;
        }
    }
}

/// Draws the heading of a section of settings. Returns true if the section is open.
bool heading(app::Group group, ImGuiTreeNodeFlags flags = 0) {
    return ImGui::CollapsingHeader(app::groupNames[static_cast<int>(group)], flags);
}

/// Draws a section with the switches and buttons of a place. Returns true if the section is open.
bool commandControls(const char* title, Place place, const Panel& panel) {
    const bool open = ImGui::CollapsingHeader(title);
    if (open) {
        switchControls(place, panel.view, panel.requests);
        buttonControls(place, panel.requests);
    }
    return open;
}

void groups(const Panel& panel) {
    if (heading(app::Group::water, ImGuiTreeNodeFlags_DefaultOpen)) {
        settingControls(app::Group::water, panel.settings);
    }
    if (heading(app::Group::light)) {
        settingControls(app::Group::light, panel.settings);
    }
    if (heading(app::Group::ink)) {
        inkControls(panel.settings);
        settingControls(app::Group::ink, panel.settings);
        buttonControls(Place::ink, panel.requests);
    }
    commandControls(app::sharedText("viewSection"), Place::view, panel);
    if (commandControls(app::sharedText("saveSection"), Place::save, panel)) {
        drawGestureList(panel.gestureFolder, panel.requests);
    }
    if (commandControls(app::sharedText("developerSection"), Place::developer, panel)) {
        drawFrameGraph(panel.times);
    }
}

/// Sets the position of the next ImGui window. An existing window keeps its position, or moves so that it is inside the
/// screen. A new window gets the position `first`.
void keepInside(const char* window, ImVec2 first) {
    const ImVec2 screen = ImGui::GetIO().DisplaySize;
    ImVec2 place = first;
    if (const ImGuiWindow* known = ImGui::FindWindowByName(window)) {
        place.x = std::max(0.0f, std::min(known->Pos.x, screen.x - known->Size.x));
        place.y = std::max(0.0f, std::min(known->Pos.y, screen.y - known->Size.y));
    }
    ImGui::SetNextWindowPos(place);
}

}  // namespace

void drawPanel(const Panel& panel) {
    const ImVec2 screen = ImGui::GetIO().DisplaySize;
    const float width = std::min(21.0f * em(), maxPart * screen.x);
    // In a wide window the panel can use the full height, because the water is visible beside the panel.
    const float height = std::max(maxPart * screen.y, std::min(screen.y, screen.x)) - em();
    char title[64];
    if (panel.rate > 0.0) {
        std::snprintf(title, sizeof title,
                      panel.rate < 10.0 ? "%.1f frames/s###panel" : "%.0f frames/s###panel",
                      panel.rate);
    } else {
        std::snprintf(title, sizeof title, "%s###panel", panel.view.paused ? "Paused" : "Idle");
    }
    keepInside("###panel", ImVec2(0.5f * em(), 0.5f * em()));
    ImGui::SetNextWindowSizeConstraints(ImVec2(width, 0.0f), ImVec2(width, height));
    bool open = true;
    if (ImGui::Begin(title, &open, ImGuiWindowFlags_AlwaysAutoResize)) {
        presetControls(panel);
        groups(panel);
    }
    ImGui::End();
    if (!open) {
        panel.requests.commands.push_back(Command::panel);
    }
}

bool closePopup() {
    const int open = ImGui::GetCurrentContext()->OpenPopupStack.Size;
    if (open > 0) {
        ImGui::ClosePopupToLevel(open - 1, true);
    }
    return open > 0;
}

bool isHintDue() {
    const ImGuiContext& context = *ImGui::GetCurrentContext();
    return context.HoveredId != 0 && context.ActiveId == 0 && context.HoveredIdTimer < hintDelay;
}

void drawHelp(Requests& requests) {
    const ImVec2 screen = ImGui::GetIO().DisplaySize;
    const float width = std::min(30.0f * em(), screen.x - em());
    ImGui::SetNextWindowPos(ImVec2(screen.x / 2, screen.y / 2), ImGuiCond_Always,
                            ImVec2(0.5f, 0.5f));
    ImGui::SetNextWindowSizeConstraints(ImVec2(width, 0.0f), ImVec2(width, screen.y - em()));
    ImGui::SetNextWindowBgAlpha(0.95f);  // hides the panel below
    bool open = true;
    if (ImGui::Begin("Keys", &open,
                     ImGuiWindowFlags_AlwaysAutoResize | ImGuiWindowFlags_NoCollapse) &&
        ImGui::BeginTable("keys", 2, ImGuiTableFlags_RowBg)) {
        ImGui::TableSetupColumn("key", ImGuiTableColumnFlags_WidthFixed);
        ImGui::TableSetupColumn("description", ImGuiTableColumnFlags_WidthStretch);
        const auto row = [](const char* name, const char* description) {
            ImGui::TableNextColumn();
            ImGui::TextColored(ImGui::GetStyleColorVec4(ImGuiCol_CheckMark), "%s", name);
            ImGui::TableNextColumn();
            ImGui::TextWrapped("%s", description);
        };
        for (const Control& control : pointerControls) {
            row(control.name, control.description);
        }
        for (const Key& key : keys()) {
            row(key.name, key.text.description);
        }
        ImGui::EndTable();
    }
    ImGui::End();
    if (!open) {
        requests.commands.push_back(Command::help);
    }
}

void drawToast(const std::string& line) {
    const ImVec2 screen = ImGui::GetIO().DisplaySize;
    ImGui::SetNextWindowPos(ImVec2(screen.x / 2, screen.y - 0.8f * em()), ImGuiCond_Always,
                            ImVec2(0.5f, 1.0f));
    ImGui::SetNextWindowBgAlpha(0.7f);
    if (ImGui::Begin("toast", nullptr,
                     ImGuiWindowFlags_NoDecoration | ImGuiWindowFlags_NoInputs |
                         ImGuiWindowFlags_AlwaysAutoResize | ImGuiWindowFlags_NoFocusOnAppearing)) {
        ImGui::PushTextWrapPos(screen.x - 3.0f * em());
        ImGui::TextUnformatted(line.c_str());
        ImGui::PopTextWrapPos();
    }
    ImGui::End();
}

}  // namespace player
