#include "app/density_overlay.h"

#include <cstddef>

#include "app/gl_state.h"

namespace app {
namespace {

// The ink texture stores the density in two channels: 255 * red + green. The false colours depend on the logarithm of
// the density, so that even ink that is too thin to see becomes blue.
constexpr const char* densityText = R"(
precision mediump float;
uniform sampler2D sTexture;
varying vec2 vTexture;
void main() {
    vec4 texel = texture2D(sTexture, vTexture);
    float ink = 255.0 * texel.r + texel.g;
    float level = clamp(log2(1.0 + 4.0 * ink) / 8.0, 0.0, 1.0);
    vec3 color = clamp(vec3(3.0 * level - 1.0, 2.0 - abs(4.0 * level - 2.0), 1.6 - 2.5 * level), 0.0, 1.0);
    gl_FragColor = vec4(color, 0.25 + 0.65 * min(1.0, 4.0 * level));
}
)";

}  // namespace

DensityOverlay::DensityOverlay() : quad(densityText) {}

void DensityOverlay::draw(GLuint texture, Size screen) const {
    const GlStateGuard guard;
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    quad.draw(texture, screen);
}

std::vector<std::uint8_t> DensityOverlay::colors(GLuint texture, Size size) const {
    const GlStateGuard guard;
    GLuint image = 0;
    GLuint framebuffer = 0;
    glGenTextures(1, &image);
    glBindTexture(GL_TEXTURE_2D, image);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, size.width, size.height, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                 nullptr);
    glGenFramebuffers(1, &framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, image, 0);
    glDisable(GL_BLEND);
    quad.draw(texture, size);
    const auto texels =
        static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
    std::vector<std::uint8_t> pixels(4 * texels);
    glReadPixels(0, 0, size.width, size.height, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    glDeleteFramebuffers(1, &framebuffer);
    glDeleteTextures(1, &image);
    return pixels;
}

}  // namespace app
