#pragma once

#include "app/size.h"
#include "player/draw/canvas.h"
#include "player/draw/font_scale.h"
#include "player/draw/painter.h"
#include "player/draw/thumbnails.h"
#include "player/window/gl_window.h"

namespace player {

/// The window with all that the player itself draws in it.
class Screen {
public:
    /// `letters`: their scale; 0: the display's. Throws Failure.
    Screen(app::Size size, bool shrinks, double scaleWanted);
    ~Screen();
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    /// A new GL context with what the player draws with set up in it.
    void renewContext();
    /// Begins the ImGui frame that the painter draws.
    void beginPanel();

    GlWindow& window() { return glWindow; }
    Canvas& canvas() { return painter.canvas(); }
    Thumbnails& thumbnails() { return painter.thumbnails(); }
    void drawPanel() { painter.draw(); }

private:
    FontScale fontScale() const;

    double wantedFontScale;
    GlWindow glWindow;
    Painter painter;
};

}  // namespace player
