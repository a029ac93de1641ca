#include "player/window/screen.h"

#include <backends/imgui_impl_sdl.h>
#include <imgui.h>

namespace player {

Screen::Screen(Size size, bool shrinks) : glWindow("Velmora", size, shrinks) {
    painter.setUp();
    ImGui_ImplSDL2_InitForOpenGL(glWindow.handle(), glWindow.context());
}

Screen::~Screen() {
    ImGui_ImplSDL2_Shutdown();
}

void Screen::renewContext() {
    painter.tearDown();
    glWindow.renewContext();
    painter.setUp();
}

void Screen::beginPanel() {
    ImGui_ImplSDL2_NewFrame();
    ImGui::NewFrame();
}

}  // namespace player
