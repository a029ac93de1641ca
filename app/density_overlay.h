#pragma once

#include <GLES2/gl2.h>

#include <cstdint>
#include <vector>

#include "app/size.h"
#include "app/textured_quad.h"

namespace app {

/// Draws the ink density in translucent false colours over the image. Zero density is a faint blue. The object belongs
/// to the GL context that was current at construction.
class DensityOverlay {
public:
    /// Throws HostError.
    DensityOverlay();

    /// Draws the false colours of the density texture over the screen.
    void draw(GLuint texture, Size screen) const;
    /// Returns the false colours of a density texture as an RGBA image of the given size, bottom row first.
    std::vector<std::uint8_t> colors(GLuint texture, Size size) const;

private:
    TexturedQuad quad;
};

}  // namespace app
