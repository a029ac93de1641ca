#pragma once

#include <GLES2/gl2.h>

#include "app/size.h"

namespace player {

/// Keeps the library's last picture, so that the panel can be drawn anew over it while the effect
/// stands still, and draws the ink's density over it. Belongs to a GL context as ImGuiRenderer
/// does.
class Canvas {
public:
    Canvas();
    ~Canvas();
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    /// Takes what the screen shows.
    void keep(app::Size screen);
    /// Shows what was kept.
    void show(app::Size screen);
    /// Lays false colours of the density texture over the screen; black and see-through without
    /// ink.
    void showDensity(GLuint texture, app::Size screen);

private:
    void drawQuad(GLuint program, GLuint texture, app::Size screen) const;

    GLuint frameProgram;
    GLuint densityProgram;
    GLuint frame = 0;
    GLuint quad = 0;
    app::Size frameSize{0, 0};
};

}  // namespace player
