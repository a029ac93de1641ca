#include "gpu/water_draw.h"

#include <GLES2/gl2.h>

#include "base/pair.h"
#include "gpu/gl_calls.h"
#include "velmora/ink_light.h"

namespace velmora {

namespace {

void setMeshUniforms(GLuint program, const WaterFrame& frame) {
    setUniform(program, "uMESH_SIZE_WIDTH", static_cast<float>(frame.meshSizeWidth));
    setUniform(program, "uMESH_SIZE_HEIGHT", static_cast<float>(frame.meshSizeHeight));
    setUniform(program, "uNUM_DETAILS_WIDTH", static_cast<float>(frame.numDetailsWidth));
    setUniform(program, "uNUM_DETAILS_HEIGHT", static_cast<float>(frame.numDetailsHeight));
    setUniform(program, "uRefractiveIndex", frame.refractiveIndex);
}

void uploadBuffer(GLenum target, GLuint buffer, GLsizeiptr bytes, const void* data) {
    glBindBuffer(target, buffer);
    glBufferData(target, bytes, data, GL_STATIC_DRAW);
    glBindBuffer(target, 0);
}

void uploadMesh(const EffectState& state, const WaterFrame& frame) {
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    uploadBuffer(GL_ARRAY_BUFFER, state.meshPositionBuffer, GLsizeiptr{frame.positionCount} * 4,
                 frame.positions);
    uploadBuffer(GL_ARRAY_BUFFER, state.meshHeightBuffer, GLsizeiptr{frame.heightCount} * 4,
                 frame.heights);
    uploadBuffer(GL_ELEMENT_ARRAY_BUFFER, state.meshIndexBuffer, GLsizeiptr{frame.indexCount} * 2,
                 frame.indices);
}

/// Binds an attribute to a mesh buffer. If the program lacks the attribute, the location is -1, which GL ignores.
void setMeshAttribute(GLint location, GLuint buffer) {
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glVertexAttribPointer(static_cast<GLuint>(location), 3, GL_FLOAT, GL_FALSE, 0, nullptr);
    glEnableVertexAttribArray(static_cast<GLuint>(location));
}

void setInk(const EffectState& state, GLuint program, float inkAmount) {
    setUniform(program, "Scale",
               Float2{1.0f / static_cast<float>(state.screenWidth),
                      1.0f / static_cast<float>(state.screenHeight)});
    const auto absorption = [&](float channel) {
        return inkAbsorption(channel, state.inkColorOffset);
    };
    setUniform(program, "ink_color", absorption(state.inkColor.r), absorption(state.inkColor.g),
               absorption(state.inkColor.b));
    setUniform(program, "intensity", inkAmount * state.inkIntensity);
    bindTexture(GL_TEXTURE2, state.inkFront.texture);
    setUniform(program, "Density", 2);
}

void setReflection(const EffectState& state, GLuint program, const WaterFrame& frame) {
    setUniform(program, "alphaRatio1", frame.alphaRatio1Scale * frame.alpha);
    setUniform(program, "fresnelRatio", frame.fresnelRatio);
    setUniform(program, "specularRatio", frame.specularRatio);
    setUniform(program, "exponent", frame.exponent);
    setUniform(program, "viewportHeight", static_cast<float>(state.screenHeight));
}

void bindWaterTextures(const EffectState& state, GLuint program, bool useSecondBackground) {
    bindTexture(GL_TEXTURE0,
                useSecondBackground ? state.backgroundTexture2 : state.backgroundTexture);
    setUniform(program, "sBGTexture", 0);
    bindTexture(GL_TEXTURE1, state.waterTexture);
    setUniform(program, "sWaterTexture", 1);
}

}  // namespace

void drawWater(const EffectState& state, const WaterFrame& frame, float inkAmount) {
    // Draw nothing if a buffer could not be created and its GL name is 0. GL would read the mesh from
    // address 0.
    if (state.meshPositionBuffer == 0 || state.meshHeightBuffer == 0 ||
        state.meshIndexBuffer == 0) {
        return;
    }
    const GLuint program = state.waterProgram.program;
    glViewport(0, 0, state.screenWidth, state.screenHeight);
    glUseProgram(program);
    setMeshUniforms(program, frame);
    const GLint positionLocation = glGetAttribLocation(program, "aPosition");
    const GLint heightsLocation = glGetAttribLocation(program, "aHeights");
    glUniformMatrix4fv(glGetUniformLocation(program, "uMVPMatrix"), 1, GL_FALSE, frame.mvpMatrix);
    uploadMesh(state, frame);
    setMeshAttribute(heightsLocation, state.meshHeightBuffer);
    setMeshAttribute(positionLocation, state.meshPositionBuffer);
    if (frame.inkEnabled) {
        setInk(state, program, inkAmount);
    }
    setReflection(state, program, frame);
    bindWaterTextures(state, program, frame.useSecondBackground);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, state.meshIndexBuffer);
    glDrawElements(GL_TRIANGLES, frame.indexCount, GL_UNSIGNED_SHORT, nullptr);
    glDisableVertexAttribArray(static_cast<GLuint>(positionLocation));
    glDisableVertexAttribArray(static_cast<GLuint>(heightsLocation));
    unbindTextures();
}

}  // namespace velmora
