#include "gpu/gpu_resources.h"

#include <GLES2/gl2.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <utility>

#include "gpu/shader_texts.h"
#include "solver/float_grid.h"
#include "solver/velocity_packing.h"

namespace velmora {

namespace {

void forgetTarget(RenderTarget& target) {
    target.framebuffer = 0;
    target.texture = 0;
}

void replaceInkTargets(EffectState& state) {
    deleteRenderTarget(state.inkFront);
    deleteRenderTarget(state.inkBack);
    state.inkFront = createRenderTarget(state.inkWidth, state.inkHeight);
    state.inkBack = createRenderTarget(state.inkWidth, state.inkHeight);
}

/// Replaces the velocity texture and its framebuffer. If the size exceeds the limits of a grid, deletes them and
/// creates none, because some drivers crash on such a large texture.
void replaceVelocityTarget(EffectState& state) {
    const std::int32_t width = state.velocityGridWidth;
    const std::int32_t height = state.velocityGridHeight;
    deleteRenderTarget(state.velocityTarget);
    state.velocityTarget = isGridSize(width, height) ? createRenderTarget(width, height)
                                                     : RenderTarget{0, 0, width, height};
}

template <class Pass>
void namePass(Pass& pass, const char* name) {
    std::free(std::exchange(pass.name, strdup(name)));
}

void namePasses(EffectState& state) {
    namePass(state.advectVelocityPass, "AdvectVelocity");
    namePass(state.advectDensityPass, "AdvectDensity");
    namePass(state.jacobiPass, "Jacobi");
    namePass(state.subtractGradientPass, "SubtractGradient");
    namePass(state.computeDivergencePass, "ComputeDivergence");
    namePass(state.addInkPass, "AddInk");
    namePass(state.addVelocityPass, "AddVelocity");
}

void allocateGrids(EffectState& state) {
    const std::int32_t width = state.velocityGridWidth;
    const std::int32_t height = state.velocityGridHeight;
    reallocateGrid(state.velocity, width, height, 2);
    reallocateGrid(state.velocityScratch, width, height, 2);
    reallocateGrid(state.inkDensity, state.inkWidth, state.inkHeight, 1);
    reallocateGrid(state.inkDensityScratch, state.inkWidth, state.inkHeight, 1);
    reallocateGrid(state.pressure, width, height, 1);
    reallocateGrid(state.pressureScratch, width, height, 1);
    reallocateGrid(state.divergence, width, height, 1);
    reallocatePackedVelocity(state.packedVelocity, width, height);
    clearGrid(state.velocity, 2);
    clearGrid(state.velocityScratch, 2);
    clearGrid(state.inkDensity, 1);
    clearGrid(state.inkDensityScratch, 1);
}

/// Releases all solver grids if memory ran out for one of them. Without grids, the solver does nothing: the ink does
/// not flow, but the water is drawn as usual.
void dropIncompleteGrids(EffectState& state) {
    FloatGrid* const grids[] = {&state.velocity, &state.velocityScratch, &state.pressure,
                                &state.pressureScratch, &state.divergence};
    const bool isComplete =
        std::all_of(std::begin(grids), std::end(grids),
                    [](const FloatGrid* grid) { return grid->data != nullptr; });
    if (!isComplete) {
        for (FloatGrid* const grid : grids) {
            releaseGrid(*grid);
        }
    }
}

void clearInkTarget(const RenderTarget& target) {
    if (target.framebuffer != 0) {  // framebuffer 0 is the screen
        glBindFramebuffer(GL_FRAMEBUFFER, target.framebuffer);
        clearBoundTarget();
    }
}

void initInkResources(EffectState& state) {
    buildProgram(state.waterProgram, waterVertexShader, waterInkFragmentShader);
    buildProgram(state.advectProgram, quadVertexShader, advectFragmentShader);
    buildProgram(state.impulseProgram, quadVertexShader, impulseFragmentShader);
    namePasses(state);
    replaceVelocityTarget(state);
    replaceInkTargets(state);
    allocateGrids(state);
    dropIncompleteGrids(state);
    if (state.quadBuffer != 0) {
        glDeleteBuffers(1, &state.quadBuffer);
        state.quadBuffer = 0;  // if glGenBuffers fails, it leaves this variable unchanged
    }
    glGenBuffers(1, &state.quadBuffer);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glViewport(0, 0, state.inkWidth, state.inkHeight);
    clearInkTarget(state.inkFront);
    clearInkTarget(state.inkBack);
    // Bind the default framebuffer (the screen) again. Frames without ink bind no framebuffer, so they would otherwise
    // draw into the ink texture.
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
}

}  // namespace

void replaceContext(EffectState& state) {
    joinSolver(state);
    std::free(std::exchange(state.packedVelocity, nullptr));
    state.waterProgram = {};
    state.advectProgram = {};
    state.impulseProgram = {};
    state.waterTexture = 0;
    state.backgroundTexture = 0;
    state.backgroundTexture2 = 0;
    forgetTarget(state.velocityTarget);
    forgetTarget(state.inkFront);
    forgetTarget(state.inkBack);
    // Reset the GL names, because glGenBuffers leaves them unchanged if it fails. A GL name of the lost context must
    // not be bound in the new context.
    state.meshPositionBuffer = state.meshHeightBuffer = state.meshIndexBuffer = 0;
    glGenBuffers(1, &state.meshPositionBuffer);
    glGenBuffers(1, &state.meshHeightBuffer);
    glGenBuffers(1, &state.meshIndexBuffer);
}

void initGPUResources(EffectState& state, bool withInk) {
    joinSolver(state);
    if (withInk) {
        initInkResources(state);
    } else {
        buildProgram(state.waterProgram, waterVertexShader, waterFragmentShader);
    }
}

}  // namespace velmora
