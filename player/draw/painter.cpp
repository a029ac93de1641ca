#include "player/draw/painter.h"

#include <imgui.h>

namespace player {

Painter::Painter() : context(ImGui::CreateContext()) {
    ImGui::GetIO().IniFilename = nullptr;  // ImGui writes no settings file
    applyFontScale(scale);
}

Painter::~Painter() {
    tearDown();
    ImGui::DestroyContext(context);
}

void Painter::setUp() {
    frameCanvas.emplace();
    renderer.emplace();
    presetThumbnails.emplace();
}

void Painter::setScale(const FontScale& wanted) {
    if (!(wanted == scale)) {
        scale = wanted;
        applyFontScale(scale);
        renderer->uploadFont();
    }
}

void Painter::tearDown() {
    presetThumbnails.reset();
    renderer.reset();
    frameCanvas.reset();
}

void Painter::draw() {
    ImGui::Render();
    renderer->draw(*ImGui::GetDrawData());
}

}  // namespace player
