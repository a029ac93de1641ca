#pragma once

#include <cstdint>
#include <cstdlib>

#include "base/pair.h"
#include "base/stroke.h"
#include "solver/float_grid.h"

// The operators of the velocity solver. They resemble fragment shaders: an object holds the parameters and grids of one
// pass, and `evaluate` computes one output cell from the position of the cell. The kernels declared below compute the
// same values for whole grids. Positions and movements on the screen are in screen pixels, y up. Velocities are in
// cells per time unit, y up. A texelSize is (1 / columns, 1 / rows) of the grid. Passes run on the solver's worker
// thread.
//
// Each kernel copies the parameters that its loop reads, such as Advection, to a local struct. Otherwise the compiler
// must assume that a store to a cell changes them, and would read them again for each cell.
//
// The method is that of J. Stam, "Stable Fluids" (SIGGRAPH 1999): semi-Lagrangian advection, then projection with a
// pressure computed by Jacobi iterations.

namespace velmora {

/// A solver pass. Each cell of its output grid holds 2 floats.
class VectorPass {
public:
    constexpr VectorPass() = default;
    VectorPass(const VectorPass&) = delete;
    VectorPass& operator=(const VectorPass&) = delete;
    virtual ~VectorPass() { std::free(name); }
    /// Computes one output cell and writes its 2 floats to `out`. `coord` is the centre of the cell in grid units: (i +
    /// 0.5, j + 0.5).
    virtual void evaluate(Float2 coord, float* out) const = 0;

    FloatGrid output{};
    char* name = nullptr;  // owned, from malloc; null until the pass is named
};

/// A solver pass. Each cell of its output grid holds 1 float.
class ScalarPass {
public:
    constexpr ScalarPass() = default;
    ScalarPass(const ScalarPass&) = delete;
    ScalarPass& operator=(const ScalarPass&) = delete;
    virtual ~ScalarPass() { std::free(name); }
    /// Computes one output cell and writes its float to `out`. `coord` is the centre of the cell in grid units: (i +
    /// 0.5, j + 0.5).
    virtual void evaluate(Float2 coord, float* out) const = 0;

    FloatGrid output{};
    char* name = nullptr;  // owned, from malloc; null until the pass is named
};

/// Parameters of AdvectVelocity.
struct Advection {
    FloatGrid velocity{};  // grid whose velocities give the departure points
    FloatGrid source{};    // grid that is advected
    Float2 texelSize{};
    Float2 cellToScreen{};     // screen pixels per cell
    float timeStep = 0.0f;     // time units, > 0
    float dissipation = 0.0f;  // factor, [0, 1]
    Float2 touchPoint{};
    Float2 touchDelta{};
    DragMode dragMode = SlowDrag;
};

/// Advects the velocity along itself (semi-Lagrangian) and multiplies it by the dissipation. A drag pushes the flow
/// near the touch.
class AdvectVelocity final : public VectorPass, public Advection {
public:
    void evaluate(Float2 coord, float* out) const override;
};

/// The CPU version of the ink advection shader, gpu/shaders/advect.frag. The effect itself advects ink on the GPU and
/// never runs this pass.
class AdvectDensity final : public ScalarPass {
public:
    void evaluate(Float2 coord, float* out) const override;

    FloatGrid velocity{};
    FloatGrid source{};
    Float2 texelSize{};
    float timeStep = 0.0f;     // time units, > 0
    float backStep = 0.0f;     // factor of the distance looked upstream, [0, 1]
    float dissipation = 0.0f;  // factor, [0, 1]
    Float2 scale{};            // screen pixels per cell
    Float2 center{};           // touch position
    DragMode drag = SlowDrag;
};

/// One Jacobi iteration for the Poisson equation of the pressure: x' = (sum of the neighbours + alpha * b) / beta.
class Jacobi final : public ScalarPass {
public:
    void evaluate(Float2 coord, float* out) const override;

    FloatGrid x{};       // current estimate
    FloatGrid b{};       // right-hand side
    float alpha = 0.0f;  // minus the area of a cell
    float rbeta = 0.0f;  // 1 / beta; beta is the number of neighbours
    Float2 texelSize{};
};

/// Subtracts the pressure gradient from the velocity.
class SubtractGradient final : public VectorPass {
public:
    void evaluate(Float2 coord, float* out) const override;

    FloatGrid velocity{};
    FloatGrid pressure{};
    Float2 texelSize{};
    float gradientScale = 0.0f;  // velocity for a pressure difference of 1, > 0
};

/// Parameters of ComputeDivergence.
struct Divergence {
    FloatGrid velocity{};
    Float2 cellToScreen{};  // screen pixels per cell
    Float2 texelSize{};
    float halfInverseCellSize = 0.0f;  // 1 / (2 * side of a cell)
    float sourceStrength = 0.0f;       // divergence that the sink subtracts, >= 0
    float sourceRadius = 0.0f;         // screen pixels, >= 0
    Float2 sourcePoint{};
};

/// Computes the divergence of the velocity and subtracts a sink at the touch.
class ComputeDivergence final : public ScalarPass, public Divergence {
public:
    void evaluate(Float2 coord, float* out) const override;
};

/// The CPU version of the ink impulse shader, gpu/shaders/impulse.frag. The effect itself adds ink on the GPU and never
/// runs this pass.
class AddInk final : public ScalarPass {
public:
    void evaluate(Float2 coord, float* out) const override;

    FloatGrid source{};
    Float2 cellToScreen{};  // screen pixels per cell
    Float2 texelSize{};
    Float2 current{};   // stroke end
    Float2 previous{};  // stroke start
    Float2 normal{};    // unit vector from start to end
    DragMode mode = SlowDrag;
    float len = 0.0f;             // screen pixels, > 0
    float impulseDensity = 0.0f;  // ink density at the centre, >= 0
    float radius = 0.0f;          // screen pixels, >= 0
};

/// Parameters of AddVelocity.
struct StrokeImpulse {
    FloatGrid velocity{};
    Float2 cellToScreen{};  // screen pixels per cell
    Float2 texelSize{};
    Float2 current{};     // stroke end
    Float2 previous{};    // stroke start
    Float2 normal{};      // unit vector from start to end
    float length = 0.0f;  // screen pixels, > 0; 1 if the stroke has length 0
    float radius = 0.0f;  // screen pixels, >= 0
};

/// Pushes the flow away from the segment of a stroke and towards the segment's end.
class AddVelocity final : public VectorPass, public StrokeImpulse {
public:
    void evaluate(Float2 coord, float* out) const override;
};

// The kernels. Each kernel computes all cells of the pass's output grid, or does nothing if that grid does not exist.
// The input grids must have the size of the output grid and must not overlap it.

void addVelocityKernel(const AddVelocity& pass);
void advectVelocityKernel(const AdvectVelocity& pass);
void computeDivergenceKernel(const ComputeDivergence& pass);
void subtractGradientKernel(const SubtractGradient& pass);

/// Runs `count` Jacobi iterations. The pressure starts at 0; the contents of `x` are ignored. After each iteration, `x`
/// and `output` exchange their grids, so the result is in `x`. `workspace` must have the size of the output and 2
/// floats per cell; its contents are overwritten.
void jacobiKernel(Jacobi& pass, std::int32_t count, const FloatGrid& workspace);

/// Runs one Jacobi iteration over all cells of the output grid except the border cells, which it sets to 0. The output
/// grid must exist.
void jacobiSweep(const Jacobi& pass);

}  // namespace velmora
