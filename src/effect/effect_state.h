#pragma once

#include <pthread.h>

#include <cstdint>
#include <mutex>

#include "effect/shared_word.h"
#include "gpu/render_target.h"
#include "gpu/shader_program.h"
#include "solver/float_grid.h"
#include "solver/passes.h"

// The one record that all of the effect works on, the touch variables beside it, and the tuning
// table. All are zero when the library is loaded and live until it is unloaded.
//
// Threads. The render thread owns every field but those below:
//   - the solver worker, from its start in stepFluid to joinSolver, alone uses the grids, the passes
//     and packedVelocity; it reads nothing else (what it needs is copied when it starts, see
//     solver/solver_step.h);
//   - the host's touch thread writes the touch variables, dragMode, inkAmount and inkDissipation,
//     always under gTouch.lock. These three are shared words: reading one alone needs no lock.

namespace velmora {

/// What a drag does, and the mode of its strokes.
enum DragMode : std::int32_t { TapMode = -1, SlowDrag = 0, MediumDrag = 1, FastDrag = 2 };

/// A stroke's segment in whole screen pixels, y down.
struct DragSegment {
    std::int32_t fromX, fromY, toX, toY;
};

struct InkColor {
    float r, g, b;
};

struct EffectState {
    constexpr EffectState() = default;
    ~EffectState();

    DragSegment dragSegment{};  // of the last fast drag frame
    pthread_t solverThread{};   // 0: none to wait for; no live thread has that handle
    RenderTarget velocityTarget{};
    RenderTarget inkFront{}, inkBack{};
    ShaderProgram waterProgram{}, advectProgram{}, impulseProgram{};
    std::uint32_t quadBuffer = 0;                                // GL name
    float gridScale = 0.0f;                                      // cell size of the solver grid
    std::int32_t screenWidth = 0, screenHeight = 0;              // pixels
    std::int32_t velocityGridWidth = 0, velocityGridHeight = 0;  // cells, one for 12 x 12 pixels
    std::int32_t inkWidth = 0, inkHeight = 0;                    // texels
    float inkRadius = 0.0f;                                      // pixels
    float impulseDensity = 0.0f;                                 // ink added by an impulse
    std::int32_t jacobiIterations = 0;
    float timeStep = 0.0f;
    float gradientScale = 0.0f;
    float velocityDissipation = 0.0f;
    // Per GPU advection pass. Written: touch step, clearInk; read: stepFluid.
    SharedWord<float> inkDissipation;
    float sourceStrength = 0.0f;  // of the sink at the touch
    float sourceRadius = 0.0f;    // pixels
    float backwardStepSize = 0.0f;
    float inkColorOffset = 0.0f;
    // 1 shown, 0 not. Written: touch events, clearInk; read: the frame, the host.
    SharedWord<float> inkAmount;
    float inkIntensity = 0.0f;
    // A DragMode. Written: touch step, clearInk; read: stepFluid, strokes.
    SharedWord<std::int32_t> dragMode;
    std::int32_t touchMargin = 0;  // pixels from the screen's edges without ink
    std::uint32_t waterTexture = 0, backgroundTexture = 0, backgroundTexture2 = 0;  // GL names
    Float2 impulseCurrent{}, impulsePrevious{};                                     // pixels, y up
    InkColor inkColor{};
    std::uint32_t meshPositionBuffer = 0, meshHeightBuffer = 0, meshIndexBuffer = 0;  // GL names
    AdvectVelocity advectVelocityPass;
    AdvectDensity advectDensityPass;
    Jacobi jacobiPass;
    SubtractGradient subtractGradientPass;
    ComputeDivergence computeDivergencePass;
    AddInk addInkPass;
    AddVelocity addVelocityPass;
    FloatGrid velocity{}, velocityScratch{};      // 2 floats a cell
    FloatGrid inkDensity{}, inkDensityScratch{};  // 1 float a cell, like all below
    FloatGrid pressure{}, pressureScratch{};
    FloatGrid divergence{};
    std::uint8_t* packedVelocity = nullptr;  // RGBA8, 4 bytes a cell of velocityTarget
};

extern EffectState gEffectState;

enum TouchPhase : std::int32_t { Idle = 0, Pressed = 1, Dragging = 2 };

/// Beside the record. Positions in screen pixels, y down.
struct TouchVariables {
    std::mutex lock;  // held over an event and over the frame's touch step, never over a GL call
    TouchPhase touchPhase = Idle;
    std::int32_t dragSpeedClass = -1;  // a DragMode; -1: none measured since the load
    float pressureFactor = 1.0f;
    std::int32_t touchX = 0, touchY = 0;          // latest event
    std::int32_t lastEventX = 0, lastEventY = 0;  // the event before
    // Movement between the two, measured while pressed or dragging.
    std::int32_t touchDeltaX = 0, touchDeltaY = 0;
    std::int32_t lastTouchAction = 0;
    std::int32_t strokeLastX = 0, strokeLastY = 0;  // start of the next stroke
    std::int32_t pressFrames = 0, dragFrames = 0, idleFrames = 0;
};

extern TouchVariables gTouch;

/// Whether frames carry ink; written by applySettings only.
extern bool gInkEnabled;

/// What the fluid step of a frame sees of touches and clears: one moment, taken whole.
struct TouchSnapshot {
    std::int32_t touchX, touchY, touchDeltaX, touchDeltaY;  // as in TouchVariables
    std::int32_t dragMode;
    float inkDissipation;
};

TouchSnapshot snapshotTouch(const EffectState& state);

/// Whether the touch lies more than `margin` pixels from every edge of the screen.
bool isInside(const EffectState& state, std::int32_t touchX, std::int32_t touchY,
              std::int32_t margin);

/// A y of the host, downwards, as the effect's, upwards; defined for any two ints.
inline float flippedY(const EffectState& state, std::int32_t y) {
    return static_cast<float>(std::int64_t{state.screenHeight} - y);
}

/// The body of onInitSetting. Waits for the worker, which uses the sizes. Resizes nothing.
void applySettings(EffectState& state, std::int32_t width, std::int32_t height, bool inkEnabled);

/// Waits for the solver worker, if one is to be waited for. Whatever frees, forgets or resizes what
/// the worker uses calls this first. Render thread.
void joinSolver(EffectState& state);

/// One gesture's effect on the settings, each copied into the field of the same name.
struct TouchPreset {
    float sourceRadius;
    float impulseDensity;
    float velocityDissipation;
    float inkDissipation;
    float sourceStrength;
    float inkRadius;
};

constexpr float activeInkDissipation = 0.99f;  // while touched, and until the idle fade
constexpr float idleInkDissipation = 0.9625f;

// In the tap and the slow drag, the last two numbers are factors: of the press frame counter and of
// the pressure.
constexpr TouchPreset tapPreset{40.0f, 200.0f, 0.98f, activeInkDissipation, 12.0f, 8.0f};
constexpr TouchPreset slowDragPreset{20.0f, 100.0f, 0.9f, activeInkDissipation, 45.0f, 40.0f};
constexpr TouchPreset mediumDragPreset{20.0f, 150.0f, 0.94f, activeInkDissipation, 10.0f, 25.0f};
constexpr TouchPreset fastDragPreset{4.0f, 40.0f, 0.96f, activeInkDissipation, 20.0f, 30.0f};

constexpr std::int32_t tapSourceFrames = 5;  // pressed frames with a velocity source
constexpr std::int32_t tapInkFrames = 10;    // pressed frames that deposit ink
constexpr std::int32_t holdFrames = 12;      // after these a resting finger ends the press
constexpr std::int32_t idleFadeFrames = 35;  // idle frames after which ink fades faster
constexpr float slowDragSpeed = 2.0f;  // pixels between two events; above it a press becomes a drag
constexpr float fastDragSpeed = 10.0f;  // pixels between two events; above it a drag is fast

}  // namespace velmora
