#include "player/draw/painter.h"

#include <imgui.h>

namespace player {

Painter::Painter() : context(ImGui::CreateContext()) {
    ImGui::GetIO().IniFilename = nullptr;  // leaves no file behind
    ImGui::GetStyle().WindowRounding = 6.0f;
}

Painter::~Painter() {
    tearDown();
    ImGui::DestroyContext(context);
}

void Painter::setUp() {
    pictureCanvas.emplace();
    renderer.emplace();
}

void Painter::tearDown() {
    renderer.reset();
    pictureCanvas.reset();
}

void Painter::draw() {
    ImGui::Render();
    renderer->draw(*ImGui::GetDrawData());
}

}  // namespace player
