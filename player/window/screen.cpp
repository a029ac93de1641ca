#include "player/window/screen.h"

#include <backends/imgui_impl_sdl.h>
#include <imgui.h>

#include <algorithm>
#include <cmath>

#include "app/size.h"
#include "player/draw/font_scale.h"

namespace player {
namespace {

/// Of a window as wide as letters of scale 1 are made for.
constexpr double phoneWidth = 540.0;
/// The panel has room beside its words in three fifths of so many pixels at scale 1.
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

/// The display's scale, or more in a window of more pixels than that explains: of a phone's or a
/// television's display whose size nobody knows. Never so much that the panel does not fit.
FontScale Screen::fontScale() const {
    const app::Size size = glWindow.pixels();
    const double side = std::min(size.width, size.height);
    const double byPixels = std::pow(side / phoneWidth, 0.75);
    const double wanted =
        wantedFontScale > 0.0 ? wantedFontScale : std::max(glWindow.displayScale(), byPixels);
    const double scale =
        std::clamp(wanted, minFontScale, std::max(minFontScale, size.width / narrowest));
    // In steps, each of which is another font.
    return {static_cast<float>(std::floor(scale * 8.0) / 8.0),
            static_cast<float>(glWindow.scaleX())};
}

void Screen::beginPanel() {
    painter.setScale(fontScale());
    ImGui_ImplSDL2_NewFrame();
    ImGui::NewFrame();
}

}  // namespace player
