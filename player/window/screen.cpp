#include "player/window/screen.h"

#include <backends/imgui_impl_sdl.h>
#include <imgui.h>

#include <algorithm>
#include <cmath>

#include "app/size.h"
#include "player/draw/font_scale.h"

namespace player {
namespace {

/// Shorter side, in pixels, of a window whose text has scale 1.
constexpr double phoneWidth = 540.0;
/// Smallest width in pixels of a window whose panel fits at scale 1. The panel covers 3/5 of the width.
constexpr double narrowest = 350.0;
constexpr double minFontScale = 0.6;

}  // namespace

Screen::Screen(app::Size size, bool shrinks, double scaleWanted)
    : wantedFontScale(scaleWanted), glWindow("Velmora", size, shrinks) {
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

/// Returns the scale of the text. If the user has not set a scale, this is the display's scale. In a window with many
/// pixels it can be larger, because some phones and televisions do not report their size. The scale is limited so that
/// the panel fits into the window.
FontScale Screen::fontScale() const {
    const app::Size size = glWindow.pixels();
    const double side = std::min(size.width, size.height);
    const double byPixels = std::pow(side / phoneWidth, 0.75);
    const double wanted =
        wantedFontScale > 0.0 ? wantedFontScale : std::max(glWindow.displayScale(), byPixels);
    const double scale =
        std::clamp(wanted, minFontScale, std::max(minFontScale, size.width / narrowest));
    // Each scale needs a new font, so round to steps of 1/8.
    return {static_cast<float>(std::floor(scale * 8.0) / 8.0),
            static_cast<float>(glWindow.scaleX())};
}

void Screen::beginPanel() {
    painter.setScale(fontScale());
    ImGui_ImplSDL2_NewFrame();
    ImGui::NewFrame();
}

}  // namespace player
