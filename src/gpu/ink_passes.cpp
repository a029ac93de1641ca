#include "gpu/ink_passes.h"

#include <GLES2/gl2.h>

#include <cstddef>
#include <cstdint>
#include <utility>

#include "base/pair.h"
#include "base/screen.h"
#include "base/stroke.h"
#include "effect/tuning.h"
#include "gpu/gl_calls.h"

namespace velmora {

namespace {

struct QuadVertex {
    GLshort x, y;
    GLshort u, v;
};

constexpr QuadVertex quad[4] = {{-1, -1, 0, 0}, {1, -1, 1, 0}, {-1, 1, 0, 1}, {1, 1, 1, 1}};

void setVertexAttribute(GLuint location, std::size_t offset) {
    glEnableVertexAttribArray(location);
    glVertexAttribPointer(location, 2, GL_SHORT, GL_FALSE, sizeof(QuadVertex),
                          reinterpret_cast<const void*>(offset));
}

void drawQuad(GLuint buffer) {
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glBufferData(GL_ARRAY_BUFFER, sizeof quad, quad, GL_STATIC_DRAW);
    setVertexAttribute(0, offsetof(QuadVertex, x));
    setVertexAttribute(1, offsetof(QuadVertex, u));
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glDisableVertexAttribArray(0);
    glDisableVertexAttribArray(1);
}

/// Draws a quad over the whole bound target, then unbinds the textures and the target.
void drawFullscreenQuad(const EffectState& state, const RenderTarget& destination) {
    // Draw nothing if an object could not be created and its GL name is 0. With buffer 0, GL would read the quad from
    // address 0. With framebuffer 0, GL would draw over the screen.
    if (state.quadBuffer != 0 && destination.framebuffer != 0) {
        drawQuad(state.quadBuffer);
    }
    unbindTextures();
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    glDisable(GL_BLEND);
}

Float2 screenSize(const EffectState& state) {
    return {static_cast<float>(state.screenWidth), static_cast<float>(state.screenHeight)};
}

/// Returns the time step of an ink advection pass, in units such that velocity * step is a distance in texture
/// coordinates.
Float2 textureTimeStep(const EffectState& state) {
    const double step = inkTimeFactor * static_cast<double>(state.timeStep);
    return {static_cast<float>(step / state.velocityGridWidth),
            static_cast<float>(step / state.velocityGridHeight)};
}

}  // namespace

void runAdvectPass(const EffectState& state, const RenderTarget& velocity,
                   const RenderTarget& source, const RenderTarget& destination, float dissipation) {
    const StepSettings& step = state.stepSettings;
    const GLuint program = state.advectProgram.program;
    const Float2 center{static_cast<float>(step.touchX),
                        static_cast<float>(flippedY(state.screenHeight, step.touchY))};
    glUseProgram(program);
    setUniform(program, "Scale", screenSize(state));
    setUniform(program, "TimeStep", textureTimeStep(state));
    setUniform(program, "Dissipation", dissipation);
    setUniform(program, "BackwardStepSize", state.backwardStepSize);
    setUniform(program, "center", center);
    setUniform(program, "drag", GLint{step.dragMode});
    setUniform(program, "SourceTexture", 1);
    glBindFramebuffer(GL_FRAMEBUFFER, destination.framebuffer);
    bindTexture(GL_TEXTURE0, velocity.texture);
    bindTexture(GL_TEXTURE1, source.texture);
    drawFullscreenQuad(state, destination);
}

void runImpulsePass(const EffectState& state, const RenderTarget& source,
                    const RenderTarget& destination, DragMode mode, Float2 previous,
                    Float2 current) {
    const GLuint program = state.impulseProgram.program;
    const StrokeLine line = lineOf(previous, current);
    glViewport(0, 0, state.inkWidth, state.inkHeight);
    glUseProgram(program);
    setUniform(program, "current", current);
    setUniform(program, "previous", previous);
    setUniform(program, "normal", line.normal);
    setUniform(program, "len", line.length);
    setUniform(program, "Radius", state.inkRadius);
    setUniform(program, "ImpulseDensity", state.impulseDensity);
    setUniform(program, "Scale", screenSize(state));
    setUniform(program, "mode", GLint{mode});
    setUniform(program, "Source", 0);
    glBindFramebuffer(GL_FRAMEBUFFER, destination.framebuffer);
    bindTexture(GL_TEXTURE0, source.texture);
    drawFullscreenQuad(state, destination);
}

void depositInk(EffectState& state, const TouchVariables& touch, const InkStroke& stroke,
                InkColor color) {
    const std::int32_t height = state.screenHeight;
    state.impulseCurrent = {stroke.current.x, flippedY(height, stroke.current.y)};
    state.impulsePrevious = {stroke.previous.x, flippedY(height, stroke.previous.y)};
    state.inkColor = color;
    if (!isInside(state, touch.touchX, touch.touchY, state.touchMargin)) {
        return;
    }
    runImpulsePass(state, state.inkFront, state.inkBack, stroke.mode, state.impulsePrevious,
                   state.impulseCurrent);
    std::swap(state.inkFront, state.inkBack);
}

}  // namespace velmora
