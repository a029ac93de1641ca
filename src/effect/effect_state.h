#pragma once

#include <pthread.h>

#include <cstdint>
#include <mutex>

#include "base/pair.h"
#include "base/stroke.h"
#include "effect/shared_word.h"
#include "effect/tuning.h"
#include "gpu/render_target.h"
#include "gpu/shader_program.h"
#include "solver/float_grid.h"
#include "solver/passes.h"
#include "solver/step_settings.h"

// The one record that all of the effect works on, zero when the library is loaded, and the touch
// variables beside it.
//
// Threads. The render thread owns every field but those below:
//   - the solver worker, from its start in stepFluid to joinSolver, alone uses the grids, the passes
//     and packedVelocity; of the settings it reads stepSettings, its copy, and those that only
//     applySettings writes, which waits for it;
//   - the host's touch thread writes the touch variables, dragMode, inkAmount and inkDissipation,
//     always under SharedTouch::lock. These three are shared words: reading one alone, or writing
//     the settings anew, needs no lock.
//
// Velocities are in cells a time unit, y up. An ink density lies in [0, 127].

namespace velmora {

struct InkColor {
    float r, g, b;  // [0.05, 1.05] as deposited: the host's [0, 1], a little lighter
};

struct EffectState {
    constexpr EffectState() = default;
    ~EffectState();

    DragSegment dragSegment{};  // of the last fast drag frame, screen pixels, y down
    pthread_t solverThread{};   // 0: none to wait for; no live thread has that handle
    RenderTarget velocityTarget{};
    RenderTarget inkFront{}, inkBack{};
    ShaderProgram waterProgram{}, advectProgram{}, impulseProgram{};
    std::uint32_t quadBuffer = 0;                                // GL name
    float gridScale = 0.0f;                                      // a cell's side in lengths, > 0
    std::int32_t screenWidth = 0, screenHeight = 0;              // pixels
    std::int32_t velocityGridWidth = 0, velocityGridHeight = 0;  // cells
    std::int32_t inkWidth = 0, inkHeight = 0;                    // texels
    float inkRadius = 0.0f;                                      // screen pixels, >= 0
    float impulseDensity = 0.0f;  // ink density at an impulse's centre, >= 0
    std::int32_t jacobiIterations = 0;
    float timeStep = 0.0f;             // time units a frame, > 0
    float gradientScale = 0.0f;        // velocity for a pressure difference of 1, > 0
    float velocityDissipation = 0.0f;  // factor a step, [0, 1]
    // Factor an advection pass, [0, 1]. Written: applySettings, touch step, clearInk; read: stepFluid.
    SharedWord<float> inkDissipation;
    float sourceStrength = 0.0f;    // divergence that the sink at the touch takes away, >= 0
    float sourceRadius = 0.0f;      // of that sink, screen pixels, >= 0
    float backwardStepSize = 0.0f;  // factor of the ink's way in a pass, [0, 1]
    float inkColorOffset = 0.0f;    // of a colour channel, [0, 1]
    // 1 shown, 0 not. Written: applySettings, touch events, clearInk; read: the frame, the host.
    SharedWord<float> inkAmount;
    float inkIntensity = 0.0f;  // darkening for an ink density of 1, [0, 1]
    // Written: applySettings, touch step, clearInk; read: stepFluid, touch step.
    SharedWord<DragMode> dragMode;
    std::int32_t touchMargin = 0;  // pixels from the screen's edges without ink
    std::uint32_t waterTexture = 0, backgroundTexture = 0, backgroundTexture2 = 0;  // GL names
    Float2 impulseCurrent{}, impulsePrevious{};  // screen pixels, y up
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
    StepSettings stepSettings{};             // of this frame: worker and passes read the one copy
};

extern EffectState gEffectState;

enum TouchPhase : std::int32_t { Idle = 0, Pressed = 1, Dragging = 2 };

/// The platform's codes; a host may send others, which only move the touch.
enum TouchAction : std::int32_t { ActionDown = 0, ActionUp = 1, ActionMove = 2, ActionCancel = 3 };

/// Beside the record. Positions in screen pixels, y down.
struct TouchVariables {
    TouchPhase touchPhase = Idle;
    DragMode dragSpeedClass = TapMode;    // of a drag; TapMode: none measured since the load
    float pressureFactor = 1.0f;          // factor of a slow drag, >= 0
    std::int32_t touchX = 0, touchY = 0;  // latest event
    std::int32_t lastEventX = 0, lastEventY = 0;  // the event before
    // Movement between the two, measured while pressed or dragging.
    std::int32_t touchDeltaX = 0, touchDeltaY = 0;
    std::int32_t lastTouchAction = 0;               // a TouchAction, or another code of the host
    std::int32_t strokeLastX = 0, strokeLastY = 0;  // start of the next stroke
    std::int32_t pressFrames = 0, dragFrames = 0, idleFrames = 0;
    bool isInkCleared = false;  // by a clear that no fluid step has carried out yet
};

/// The touch variables as the threads share them.
struct SharedTouch {
    std::mutex lock;  // held over an event and over the frame's touch step, never over a GL call
    TouchVariables variables;
};

extern SharedTouch gTouch;

/// Whether frames carry ink; written by onInitSetting only.
extern bool inkEnabled;

/// Whether the touch lies more than `margin` pixels from every edge of the screen.
bool isInside(const EffectState& state, std::int32_t touchX, std::int32_t touchY,
              std::int32_t margin);

/// What onInitSetting writes into the record: sizes in pixels, and with ink all settings. Waits for
/// the worker, which uses them. Resizes nothing.
void applySettings(EffectState& state, std::int32_t width, std::int32_t height, bool withInk);

/// Waits for the solver worker, if one is to be waited for. Whatever frees, forgets or resizes what
/// the worker uses calls this first. Render thread.
void joinSolver(EffectState& state);

void applyPreset(EffectState& state, const TouchPreset& preset);

}  // namespace velmora
