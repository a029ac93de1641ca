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

// The state of the effect, all zero when the library is loaded, and the touch variables.
//
// Threads: the render thread owns every field except these.
//   - The solver worker alone uses the grids, the passes and packedVelocity from stepFluid, which starts it, until
//     joinSolver returns. It reads this frame's settings from the copy in stepSettings. It reads the other settings
//     directly: only applySettings writes them, and applySettings waits for the worker first.
//   - The host's touch thread writes the touch variables, dragMode, inkAmount and inkDissipation, always while it holds
//     SharedTouch::lock. The last three are SharedWords: any thread may read one of them without the lock.
//
// Velocities are in cells per time unit, y up. An ink density is in [0, 127].

namespace velmora {

struct InkColor {
    float r, g, b;  // [0.05, 1.05] as deposited, see inkChannel
};

struct EffectState {
    constexpr EffectState() = default;
    ~EffectState();

    DragSegment dragSegment{};  // of the last frame of a fast drag, screen pixels, y down
    // Thread of the solver worker, or 0 if there is no worker to wait for. No running thread has the handle 0.
    pthread_t solverThread{};
    RenderTarget velocityTarget{};
    RenderTarget inkFront{}, inkBack{};
    ShaderProgram waterProgram{}, advectProgram{}, impulseProgram{};
    std::uint32_t quadBuffer = 0;                                // GL name
    float gridScale = 0.0f;                                      // side of a cell, lengths, > 0
    std::int32_t screenWidth = 0, screenHeight = 0;              // pixels
    std::int32_t velocityGridWidth = 0, velocityGridHeight = 0;  // cells
    std::int32_t inkWidth = 0, inkHeight = 0;                    // texels
    float inkRadius = 0.0f;                                      // screen pixels, >= 0
    float impulseDensity = 0.0f;  // ink density at the centre of an impulse, >= 0
    std::int32_t jacobiIterations = 0;
    float timeStep = 0.0f;             // time units per frame, > 0
    float gradientScale = 0.0f;        // velocity for a pressure difference of 1, > 0
    float velocityDissipation = 0.0f;  // factor per step, [0, 1]
    // Factor by which an advection pass multiplies all ink, [0, 1]. Writers: applySettings, touch step, clearInk.
    // Reader: stepFluid.
    SharedWord<float> inkDissipation;
    float sourceStrength = 0.0f;    // divergence that the sink at the touch subtracts, >= 0
    float sourceRadius = 0.0f;      // radius of that sink, screen pixels, >= 0
    float backwardStepSize = 0.0f;  // share of an ink pass's backward distance that is used, [0, 1]
    float inkColorOffset = 0.0f;    // offset of the absorption, see inkAbsorption
    // Amount of ink that frames show: 1 or 0. Writers: applySettings, touch events, clearInk. Readers: the frame, the
    // host.
    SharedWord<float> inkAmount;
    float inkIntensity = 0.0f;  // darkening by ink of density 1, [0, 1]
    // Kind of the current touch. Writers: applySettings, touch step, clearInk. Readers: stepFluid, touch step.
    SharedWord<DragMode> dragMode;
    std::int32_t touchMargin = 0;  // width of the border in which no ink is deposited, pixels
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
    FloatGrid velocity{}, velocityScratch{};      // 2 floats per cell
    FloatGrid inkDensity{}, inkDensityScratch{};  // 1 float per cell, like the grids below
    FloatGrid pressure{}, pressureScratch{};
    FloatGrid divergence{};
    std::uint8_t* packedVelocity = nullptr;  // RGBA8, 4 bytes per cell of velocityTarget
    StepSettings stepSettings{};             // of this frame, for the worker and the ink passes
};

extern EffectState gEffectState;

enum TouchPhase : std::int32_t { Idle = 0, Pressed = 1, Dragging = 2 };

/// Action codes of Android's MotionEvent. A host can send other codes. They show the ink, and update the position, the
/// pressure and, during a drag, the drag speed. They leave the touch phase unchanged, but like ActionDown and ActionUp,
/// they allow the next frame to end a long press.
enum TouchAction : std::int32_t { ActionDown = 0, ActionUp = 1, ActionMove = 2, ActionCancel = 3 };

/// State of the touch. Positions are in screen pixels, y down.
struct TouchVariables {
    TouchPhase touchPhase = Idle;
    DragMode dragSpeedClass = TapMode;    // of the latest drag; TapMode before the first drag
    float pressureFactor = 1.0f;          // factor of the slow-drag preset, >= 0
    std::int32_t touchX = 0, touchY = 0;  // position of the latest event
    std::int32_t lastEventX = 0, lastEventY = 0;  // position of the event before
    // Movement from the second-last event to the latest event, measured while the finger is down.
    std::int32_t touchDeltaX = 0, touchDeltaY = 0;
    std::int32_t lastTouchAction = 0;               // a TouchAction or another code of the host
    std::int32_t strokeLastX = 0, strokeLastY = 0;  // start of the next stroke
    std::int32_t pressFrames = 0, dragFrames = 0, idleFrames = 0;
    bool isInkCleared = false;  // true until a fluid step has emptied the ink
};

/// The touch variables and the lock that protects them.
struct SharedTouch {
    std::mutex lock;  // held during a touch event and a touch step, but never during a GL call
    TouchVariables variables;
};

extern SharedTouch gTouch;

/// True if ink is enabled. Only onInitSetting writes the variable.
extern bool inkEnabled;

/// Returns true if the touch is more than `margin` pixels from every edge of the screen.
bool isInside(const EffectState& state, std::int32_t touchX, std::int32_t touchY,
              std::int32_t margin);

/// Handles onInitSetting: stores the screen size in pixels and, if `withInk` is true, the initial settings. Waits for
/// the solver worker first, because the worker reads the settings. Does not resize grids or targets.
void applySettings(EffectState& state, std::int32_t width, std::int32_t height, bool withInk);

/// Waits for the solver worker, if one is running. Must be called before memory that the worker uses is freed or
/// resized. Call it on the render thread.
void joinSolver(EffectState& state);

/// Copies the preset's values into the fields of the same names.
void applyPreset(EffectState& state, const TouchPreset& preset);

}  // namespace velmora
