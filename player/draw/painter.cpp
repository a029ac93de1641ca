#include "player/draw/painter.h"

#include <imgui.h>

namespace player {

Painter::Painter() : context(ImGui::CreateContext()) {
    ImGui::GetIO().IniFilename = nullptr;  // leaves no file behind
    setLetters(scale);
}

Painter::~Painter() {
    tearDown();
    ImGui::DestroyContext(context);
}

void Painter::setUp() {
    pictureCanvas.emplace();
    renderer.emplace();
    presetPictures.emplace();
}

void Painter::setScale(const LetterScale& wanted) {
    if (!(wanted == scale)) {
        scale = wanted;
        setLetters(scale);
        renderer->uploadFont();
    }
}

void Painter::tearDown() {
    presetPictures.reset();
    renderer.reset();
    pictureCanvas.reset();
}

void Painter::draw() {
    ImGui::Render();
    renderer->draw(*ImGui::GetDrawData());
}

}  // namespace player
