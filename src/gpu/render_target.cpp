#include "gpu/render_target.h"

#include <GLES2/gl2.h>

namespace velmora {

RenderTarget createRenderTarget(int width, int height) {
    RenderTarget target{0, 0, width, height};
    glGenFramebuffers(1, &target.framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, target.framebuffer);
    glGenTextures(1, &target.texture);
    glBindTexture(GL_TEXTURE_2D, target.texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, width, height, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, target.texture, 0);
    if (target.framebuffer != 0) {  // framebuffer 0 is the screen
        clearBoundTarget();
    }
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    return target;
}

void clearBoundTarget() {
    glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
    glClear(GL_COLOR_BUFFER_BIT);
}

void deleteRenderTarget(const RenderTarget& target) {
    if (target.framebuffer != 0) {
        glDeleteFramebuffers(1, &target.framebuffer);
    }
    if (target.texture != 0) {
        glDeleteTextures(1, &target.texture);
    }
}

}  // namespace velmora
