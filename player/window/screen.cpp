#include "player/window/screen.h"

#include <backends/imgui_impl_sdl.h>
#include <imgui.h>

namespace player {

Screen::Screen(Size size) : glWindow("Velmora", size), panel(ImGui::CreateContext()) {
    ImGui::GetIO().IniFilename = nullptr;  // leaves no file behind
    ImGui::GetStyle().WindowRounding = 6.0f;
    ImGui_ImplSDL2_InitForOpenGL(glWindow.handle(), glWindow.context());
    setUp();
}

Screen::~Screen() {
    renderer.reset();
    pictureCanvas.reset();
    ImGui_ImplSDL2_Shutdown();
    ImGui::DestroyContext(panel);
}

void Screen::setUp() {
    pictureCanvas.emplace();
    renderer.emplace();
}

void Screen::renewContext() {
    renderer.reset();
    pictureCanvas.reset();
    glWindow.renewContext();
    setUp();
}

void Screen::beginPanel() {
    ImGui_ImplSDL2_NewFrame();
    ImGui::NewFrame();
}

void Screen::drawPanel() {
    ImGui::Render();
    renderer->draw(*ImGui::GetDrawData());
}

}  // namespace player
