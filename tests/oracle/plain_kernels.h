#pragma once

#include <cstddef>
#include <cstdint>

#include "effect/effect_state.h"
#include "solver/passes.h"
#include "water/height_field.h"
#include "water/mesh.h"
#include "water/ripple.h"

/// Every kernel of the library once more, in plain scalar C++, one cell at a time: what its results
/// are compared with and its speed is measured against. Same names, arguments and results as in
/// namespace velmora, to the last bit, whatever the library takes: NaN, infinities and any int.
/// Where two forms of the same passes differ in speed, the faster stands here: no intrinsics, no
/// fusion of passes, but no trip through memory that careful code would not make.
namespace reference {

void writeMeshPositions(float* positions, int vertexCount, const velmora::MeshShape& shape);
void writeMeshIndices(std::uint16_t* indices, const velmora::MeshShape& shape);

void addRipple(float* grid, const velmora::RippleTouch& touch);

bool stepHeightField(const velmora::WaterGrids& grids, const velmora::WaterRectangle& rectangle,
                     const velmora::WaveSettings& settings);

void addVelocityKernel(const velmora::AddVelocity& pass);
void advectVelocityKernel(const velmora::AdvectVelocity& pass);
void computeDivergenceKernel(const velmora::ComputeDivergence& pass);
/// From a pressure of 0.
void jacobiKernel(velmora::Jacobi& pass, std::int32_t count);
void subtractGradientKernel(const velmora::SubtractGradient& pass);
void packComponents(std::uint8_t* to, const float* from, std::ptrdiff_t count);

/// Runs the operators of a projected step in their order, with the parameters that the library's last
/// step has left in the passes, and packs the result.
void repeatStep(velmora::EffectState& state);

}  // namespace reference
