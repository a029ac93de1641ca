#pragma once

#include <cstddef>
#include <cstdint>

#include "effect/effect_state.h"
#include "solver/passes.h"
#include "water/height_field.h"
#include "water/mesh.h"
#include "water/ripple.h"

/// Every kernel of the library in plain scalar C++, one cell at a time. Tests compare the library's results with the
/// results of these kernels, and the benchmark compares the run times. Names and arguments are the same as in the
/// namespace velmora. The results of a kernel here and of the kernel with the same name in velmora are bit-identical,
/// also for NaN, infinities and any int. Each kernel is the fastest plain version without intrinsics or merged passes.
namespace reference {

void writeMeshPositions(float* positions, int vertexCount, const velmora::MeshShape& shape);
void writeMeshIndices(std::uint16_t* indices, const velmora::MeshShape& shape);

void addRipple(float* grid, const velmora::RippleTouch& touch);

bool stepHeightField(const velmora::WaterGrids& grids, const velmora::WaterRectangle& rectangle,
                     const velmora::WaveSettings& settings);

void addVelocityKernel(const velmora::AddVelocity& pass);
void advectVelocityKernel(const velmora::AdvectVelocity& pass);
void computeDivergenceKernel(const velmora::ComputeDivergence& pass);
/// Runs `count` Jacobi iterations, starting from pressure 0.
void jacobiKernel(velmora::Jacobi& pass, std::int32_t count);
void subtractGradientKernel(const velmora::SubtractGradient& pass);
void packComponents(std::uint8_t* to, const float* from, std::ptrdiff_t count);

/// Repeats the operators of a solver step with projection and packs the result. Uses the parameters of the passes from
/// the library's last step.
void repeatStep(velmora::EffectState& state);

}  // namespace reference
