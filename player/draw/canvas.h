#pragma once

#include <GLES2/gl2.h>

#include "app/density_overlay.h"
#include "app/size.h"
#include "app/textured_quad.h"

namespace player {

/// Stores a copy of the library's last frame, so that the panel can be redrawn over it while the effect is idle.
/// Also draws the ink density over the frame. Belongs to the GL context that was current at construction.
class Canvas {
public:
    Canvas();
    ~Canvas();
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    /// Copies the frame on the screen.
    void keep(app::Size screen);
    /// Draws the stored frame. Does nothing if there is none.
    void show(app::Size screen);
    /// Draws the density texture over the screen in false colours.
    void showDensity(GLuint texture, app::Size screen) { density.draw(texture, screen); }

private:
    app::TexturedQuad quad;
    app::DensityOverlay density;
    GLuint frame = 0;
    app::Size frameSize{0, 0};
};

}  // namespace player
