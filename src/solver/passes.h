#pragma once

#include <cstdint>
#include <cstdlib>

#include "base/pair.h"
#include "base/stroke.h"
#include "solver/float_grid.h"

// The operators of the velocity solver, in the manner of fragment shaders: an object holds the
// parameters and grids of one pass, `evaluate` gives one output cell from the cell's own position.
// The whole-grid kernels below give every cell the same value. Positions and movements on the
// screen are in screen pixels, y up; velocities are in cells a time unit, y up; a texelSize is
// (1 / columns, 1 / rows) of the grid. Passes run on the solver's worker thread.
//
// Where a kernel reads many numbers inside its loop, they are a record, of which the kernel takes a
// copy: for all that a compiler knows, a store of cells may change what lies behind a reference.
//
// The scheme is that of J. Stam, "Stable Fluids" (SIGGRAPH 1999): semi-Lagrangian advection, then
// projection by a pressure that Jacobi relaxation finds.

namespace velmora {

/// A pass whose cells hold 2 floats.
class VectorPass {
public:
    constexpr VectorPass() = default;
    VectorPass(const VectorPass&) = delete;
    VectorPass& operator=(const VectorPass&) = delete;
    virtual ~VectorPass() { std::free(name); }
    /// Writes the 2 floats of the cell centred at `coord`, in grid units: (i + 0.5, j + 0.5).
    virtual void evaluate(Float2 coord, float* out) const = 0;

    FloatGrid output{};
    char* name = nullptr;  // owned, from malloc; null before the pass is named
};

/// A pass whose cells hold 1 float.
class ScalarPass {
public:
    constexpr ScalarPass() = default;
    ScalarPass(const ScalarPass&) = delete;
    ScalarPass& operator=(const ScalarPass&) = delete;
    virtual ~ScalarPass() { std::free(name); }
    /// Writes the float of the cell centred at `coord`, in grid units: (i + 0.5, j + 0.5).
    virtual void evaluate(Float2 coord, float* out) const = 0;

    FloatGrid output{};
    char* name = nullptr;  // owned, from malloc; null before the pass is named
};

/// What AdvectVelocity works on.
struct Advection {
    FloatGrid velocity{};  // carries
    FloatGrid source{};    // is carried
    Float2 texelSize{};
    Float2 cellToScreen{};     // screen pixels a cell
    float timeStep = 0.0f;     // time units, > 0
    float dissipation = 0.0f;  // factor, [0, 1]
    Float2 touchPoint{};
    Float2 touchDelta{};
    DragMode dragMode = SlowDrag;
};

/// Semi-Lagrangian self-advection with decay; near the touch a drag pushes the flow.
class AdvectVelocity final : public VectorPass, public Advection {
public:
    void evaluate(Float2 coord, float* out) const override;
};

/// The CPU form of the ink advection shader; the effect runs it on the GPU only.
class AdvectDensity final : public ScalarPass {
public:
    void evaluate(Float2 coord, float* out) const override;

    FloatGrid velocity{};
    FloatGrid source{};
    Float2 texelSize{};
    float timeStep = 0.0f;     // time units, > 0
    float backStep = 0.0f;     // factor of the way back, [0, 1]
    float dissipation = 0.0f;  // factor, [0, 1]
    Float2 scale{};            // screen pixels a cell
    Float2 center{};           // the touch
    DragMode drag = SlowDrag;
};

/// One relaxation step of the pressure's Poisson equation.
class Jacobi final : public ScalarPass {
public:
    void evaluate(Float2 coord, float* out) const override;

    FloatGrid x{};       // current estimate
    FloatGrid b{};       // right-hand side
    float alpha = 0.0f;  // minus a cell's area
    float rbeta = 0.0f;  // 1 / neighbours of a cell
    Float2 texelSize{};
};

/// Takes the pressure gradient out of the velocity.
class SubtractGradient final : public VectorPass {
public:
    void evaluate(Float2 coord, float* out) const override;

    FloatGrid velocity{};
    FloatGrid pressure{};
    Float2 texelSize{};
    float gradientScale = 0.0f;  // velocity for a pressure difference of 1, > 0
};

/// What ComputeDivergence works on.
struct Divergence {
    FloatGrid velocity{};
    Float2 cellToScreen{};  // screen pixels a cell
    Float2 texelSize{};
    float halfInverseCellSize = 0.0f;  // 1 / two cells' sides
    float sourceStrength = 0.0f;       // what the sink takes from the divergence, >= 0
    float sourceRadius = 0.0f;         // screen pixels, >= 0
    Float2 sourcePoint{};
};

/// Divergence of the velocity, with a sink at the touch.
class ComputeDivergence final : public ScalarPass, public Divergence {
public:
    void evaluate(Float2 coord, float* out) const override;
};

/// The CPU form of the ink impulse shader; the effect runs it on the GPU only.
class AddInk final : public ScalarPass {
public:
    void evaluate(Float2 coord, float* out) const override;

    FloatGrid source{};
    Float2 cellToScreen{};  // screen pixels a cell
    Float2 texelSize{};
    Float2 current{};   // stroke end
    Float2 previous{};  // stroke start
    Float2 normal{};    // unit vector from start to end
    DragMode mode = SlowDrag;
    float len = 0.0f;             // screen pixels, > 0
    float impulseDensity = 0.0f;  // ink density at the centre, >= 0
    float radius = 0.0f;          // screen pixels, >= 0
};

/// What AddVelocity works on.
struct StrokeImpulse {
    FloatGrid velocity{};
    Float2 cellToScreen{};  // screen pixels a cell
    Float2 texelSize{};
    Float2 current{};     // stroke end
    Float2 previous{};    // stroke start
    Float2 normal{};      // unit vector from start to end
    float length = 0.0f;  // screen pixels, > 0: 1 when the stroke has length 0
    float radius = 0.0f;  // screen pixels, >= 0
};

/// Pushes velocity out of a stroke's segment and towards its end.
class AddVelocity final : public VectorPass, public StrokeImpulse {
public:
    void evaluate(Float2 coord, float* out) const override;
};

// Each kernel computes every cell of the pass's output and does nothing if that grid does not exist. The input grids
// have the output's size and are other blocks than it.

void addVelocityKernel(const AddVelocity& pass);
void advectVelocityKernel(const AdvectVelocity& pass);
void computeDivergenceKernel(const ComputeDivergence& pass);
void subtractGradientKernel(const SubtractGradient& pass);

/// Runs `count` Jacobi iterations from a pressure of 0, whatever `x` holds. After each of them `x` and `output`
/// exchange their grids, so the result is in `x`. `workspace` has the output's size and 2 floats a cell; its contents
/// are lost.
void jacobiKernel(Jacobi& pass, std::int32_t count, const FloatGrid& workspace);

/// Runs one Jacobi iteration over the interior of the output, which must exist; its border becomes 0.
void jacobiSweep(const Jacobi& pass);

}  // namespace velmora
