#include "player/window/dialog.h"

#include <imgui.h>

#include <algorithm>
#include <utility>

#include "app/labels.h"

namespace player {
namespace {

/// Maximum number of frames that keys wait for the focus of the text field. ImGui needs two or three frames.
constexpr int maxFramesToFocus = 10;

}  // namespace

void Dialog::open(Command wanted, std::string newQuestion, const char* label) {
    command = wanted;
    question = std::move(newQuestion);
    action = label;
    opening = true;
}

void Dialog::ask(Command wanted, std::string newQuestion, const std::string& initial,
                 const char* label) {
    open(wanted, std::move(newQuestion), label);
    asksForText = true;
    framesToFocus = maxFramesToFocus;
    text.fill(0);
    initial.copy(text.data(), text.size() - 1);
}

void Dialog::confirm(Command wanted, std::string newQuestion, const char* label) {
    open(wanted, std::move(newQuestion), label);
    asksForText = false;
    framesToFocus = 0;
}

void Dialog::draw(Requests& requests) {
    if (std::exchange(opening, false)) {
        ImGui::OpenPopup("dialog");
    }
    const ImVec2 screen = ImGui::GetIO().DisplaySize;
    ImGui::SetNextWindowPos(ImVec2(screen.x / 2, screen.y / 2), ImGuiCond_Always,
                            ImVec2(0.5f, 0.5f));
    shown = ImGui::BeginPopup("dialog", ImGuiWindowFlags_AlwaysAutoResize);
    if (shown) {
        drawContent(requests);
        ImGui::EndPopup();
    }
    accepting = false;
}

/// Draws the text field, and gives it the focus when the dialog opens.
void Dialog::drawTextField(float width) {
    if (ImGui::IsWindowAppearing()) {
        ImGui::SetKeyboardFocusHere();
    }
    ImGui::SetNextItemWidth(width);
    ImGui::InputText("##text", text.data(), text.size(), ImGuiInputTextFlags_AutoSelectAll);
    framesToFocus = ImGui::IsItemActive() ? 0 : std::max(framesToFocus - 1, 0);
}

void Dialog::drawContent(Requests& requests) {
    const float width = 16.0f * ImGui::GetFontSize();
    ImGui::PushTextWrapPos(width);
    ImGui::TextUnformatted(question.c_str());
    ImGui::PopTextWrapPos();
    if (asksForText) {
        drawTextField(width);
    }
    const bool accepted = ImGui::Button(action) || accepting;
    ImGui::SameLine();
    if (ImGui::Button(app::sharedText("cancel")) || accepted) {
        ImGui::CloseCurrentPopup();
    }
    if (accepted) {
        requests.answers.push_back({command, text.data()});
    }
}

}  // namespace player
