#include "hostkit/screen.h"

#include <GLES2/gl2.h>

#include <algorithm>
#include <cstddef>

namespace hostkit {

std::vector<std::uint8_t> readScreen(int width, int height) {
    const std::size_t rowBytes = static_cast<std::size_t>(width) * 4;
    std::vector<std::uint8_t> pixels(rowBytes * static_cast<std::size_t>(height));
    GLint bound = 0;
    glGetIntegerv(GL_FRAMEBUFFER_BINDING, &bound);
    if (bound != 0) {
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
    }
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    if (bound != 0) {
        glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(bound));
    }
    // Reverse the order of the rows, because GL returns the bottom row first.
    auto top = pixels.begin();
    auto bottom = pixels.end();
    const auto step = static_cast<std::ptrdiff_t>(rowBytes);
    for (; bottom - top >= 2 * step; top += step, bottom -= step) {
        std::swap_ranges(top, top + step, bottom - step);
    }
    return pixels;
}

}  // namespace hostkit
