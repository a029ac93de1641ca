#pragma once

#include <cstdint>

// The tuning table: the constants that decide how ink and flow look. A constant that only one solver pass uses is in
// the file of that pass. The constants of light absorption are in velmora/ink_light.h.

namespace velmora {

/// Six settings that are applied together. Each value is copied into the field of EffectState with the same name.
struct TouchPreset {
    float sourceRadius;         // screen pixels
    float impulseDensity;       // ink density
    float velocityDissipation;  // factor per step
    float inkDissipation;       // factor per advection pass
    float sourceStrength;       // divergence
    float inkRadius;            // screen pixels
};

// ---- Gestures

// Factors by which one advection pass multiplies the ink. The active factor applies during a touch and for
// idleFadeFrames frames after it. Then the idle factor applies.
constexpr float activeInkDissipation = 0.99f;
constexpr float idleInkDissipation = 0.9625f;

constexpr TouchPreset initialPreset{40.0f, 200.0f, 0.9f, 0.96f, 50.0f, 2.0f};
// The touch step multiplies sourceStrength and inkRadius of two presets: in tapPreset by TouchVariables::pressFrames,
// in slowDragPreset by the pressure factor. From tapSourceFrames on, the sourceStrength of a tap is 0.
constexpr TouchPreset tapPreset{40.0f, 200.0f, 0.98f, activeInkDissipation, 12.0f, 8.0f};
constexpr TouchPreset slowDragPreset{20.0f, 100.0f, 0.9f, activeInkDissipation, 45.0f, 40.0f};
constexpr TouchPreset mediumDragPreset{20.0f, 150.0f, 0.94f, activeInkDissipation, 10.0f, 25.0f};
constexpr TouchPreset fastDragPreset{4.0f, 40.0f, 0.96f, activeInkDissipation, 20.0f, 30.0f};

constexpr std::int32_t tapSourceFrames = 5;  // pressed frames with a velocity source
constexpr std::int32_t tapInkFrames = 10;    // pressed frames that deposit ink
constexpr std::int32_t holdFrames = 12;      // pressed frames after which a motionless press ends
constexpr std::int32_t shortDragFrames = 9;  // longest drag, in frames, that finishes like a tap
constexpr std::int32_t idleFadeFrames = 35;  // idle frames after which ink fades faster
constexpr float slowDragSpeed = 2.0f;        // pixels per event; a faster press becomes a drag
constexpr float fastDragSpeed = 10.0f;       // pixels per event; a faster drag is fast
constexpr float minPressureFactor = 0.2f;    // pressure factor at the lightest pressure
constexpr float tapBackwardStep = 0.1f;      // EffectState::backwardStepSize per pressed frame

// ---- Ink

constexpr float fullBackwardStep = 1.0f;  // EffectState::backwardStepSize while no tap is pressed
constexpr int inkAdvectionPasses = 4;     // per frame
constexpr double inkTimeFactor = 0.9;     // share of EffectState::timeStep that an ink pass advects
constexpr float initialInkIntensity = 0.2f;      // value before the first frame
constexpr std::int32_t initialTouchMargin = 10;  // pixels; value before the first solver step

// ---- Flow

constexpr float baseTimeStep = 0.25f;          // EffectState::timeStep of every frame
constexpr float cellSide = 2.5f;               // EffectState::gridScale, in length units
constexpr float pressureGradientScale = 0.2f;  // EffectState::gradientScale
constexpr std::int32_t pressureIterations = 20;

// Distances from the screen's edges in pixels. The solver step skips the projection if the touch is nearer to an edge
// than the margin of its drag mode.
constexpr std::int32_t projectionMargin = 60;
constexpr std::int32_t slowDragMargin = 12;
constexpr std::int32_t mediumDragMargin = 10;

/// The sink: an area around the touch into which the flow disappears. If a slow or medium drag is near an edge of the
/// screen, the solver step replaces the sink of the touch preset by an EdgeSink.
struct EdgeSink {
    float radius;    // screen pixels
    float strength;  // divergence
};
constexpr EdgeSink slowDragSink{4.0f, 40.0f};
constexpr EdgeSink mediumDragSink{2.0f, 2.0f};

// Width in pixels of the square around the touch in which the sink is placed at random.
constexpr double sinkJitter = 10.0;

}  // namespace velmora
