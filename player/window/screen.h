#pragma once

#include "app/size.h"
#include "player/draw/canvas.h"
#include "player/draw/font_scale.h"
#include "player/draw/painter.h"
#include "player/draw/thumbnails.h"
#include "player/window/gl_window.h"

namespace player {

/// The desktop window with the painter of the player's overlays and panel.
class Screen {
public:
    /// Opens the window. `scaleWanted` is the scale of the text; 0 means the display's scale. Throws Failure.
    Screen(app::Size size, bool shrinks, double scaleWanted);
    ~Screen();
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    /// Replaces the GL context and creates the painter's objects in the new context.
    void renewContext();
    /// Starts an ImGui frame. The function drawPanel ends and draws this frame.
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
