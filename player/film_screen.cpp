#include "player/film_screen.h"

#include <imgui.h>

#include "app/effect_probe.h"
#include "app/size.h"
#include "desktop/image.h"
#include "hostkit/image.h"
#include "player/draw/overlays.h"

namespace player {

using desktop::readFrame;

FilmScreen::FilmScreen(app::Size screen, Overlays shown) : size(screen), overlays(shown) {
    context.emplace(size.width, size.height);
    if (overlays.velocity || overlays.ink) {
        painter.emplace();
        painter->setUp();
    }
}

void FilmScreen::renewContext() {
    if (painter) {
        painter->tearDown();
    }
    context.reset();
    context.emplace(size.width, size.height);
    if (painter) {
        painter->setUp();
    }
}

void FilmScreen::drawOver(const app::EffectProbe& probe) {
    if (!painter) {
        return;
    }
    ImGui::GetIO().DisplaySize =
        ImVec2(static_cast<float>(size.width), static_cast<float>(size.height));
    ImGui::NewFrame();
    drawOverlays(overlays, probe, painter->canvas(), size);
    painter->draw();
}

hostkit::Image FilmScreen::shown() const {
    return readFrame(size);
}

}  // namespace player
