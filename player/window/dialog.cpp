#include "player/window/dialog.h"

#include <imgui.h>

#include <utility>

#include "app/labels.h"

namespace player {

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
    text.fill(0);
    initial.copy(text.data(), text.size() - 1);
}

void Dialog::confirm(Command wanted, std::string newQuestion, const char* label) {
    open(wanted, std::move(newQuestion), label);
    asksForText = false;
}

void Dialog::draw(Requests& requests) {
    if (std::exchange(opening, false)) {
        ImGui::OpenPopup("dialog");
    }
    const ImVec2 screen = ImGui::GetIO().DisplaySize;
    ImGui::SetNextWindowPos(ImVec2(screen.x / 2, screen.y / 2), ImGuiCond_Always,
                            ImVec2(0.5f, 0.5f));
    if (ImGui::BeginPopup("dialog", ImGuiWindowFlags_AlwaysAutoResize)) {
        drawContent(requests);
        ImGui::EndPopup();
    }
    accepting = false;
}

void Dialog::drawContent(Requests& requests) {
    const float width = 16.0f * ImGui::GetFontSize();
    ImGui::PushTextWrapPos(width);
    ImGui::TextUnformatted(question.c_str());
    ImGui::PopTextWrapPos();
    if (asksForText) {
        if (ImGui::IsWindowAppearing()) {
            ImGui::SetKeyboardFocusHere();
        }
        ImGui::SetNextItemWidth(width);
        ImGui::InputText("##text", text.data(), text.size(), ImGuiInputTextFlags_AutoSelectAll);
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
