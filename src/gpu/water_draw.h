#pragma once

#include <cstdint>

#include "effect/effect_state.h"

namespace velmora {

/// Arguments of the host for drawing the water. A struct keeps callers from confusing the many ints and floats.
struct WaterFrame {
    const float* positions;  // 3 floats per vertex, mesh units, y up
    // Three heights per vertex, in [-100, 100]: of the vertex, of its right neighbour and of its upper neighbour. A
    // height of 4 equals one mesh unit.
    const float* heights;
    const std::uint16_t* indices;  // triangle list
    std::int32_t positionCount;    // floats
    std::int32_t heightCount;      // floats
    std::int32_t indexCount;
    const float* mvpMatrix;      // 16 floats, column-major
    std::int32_t meshSizeWidth;  // mesh units
    std::int32_t meshSizeHeight;
    std::int32_t numDetailsWidth;  // vertices across
    std::int32_t numDetailsHeight;
    float refractiveIndex;   // of water relative to air; 1 refracts no light
    float alpha;             // weight of the reflection map, >= 0
    float alphaRatio1Scale;  // factor of alpha, >= 0
    float alphaRatio2Scale;  // has no effect
    float fresnelRatio;      // extra weight on slopes that face the light, >= 0
    // Brightness factor at the peak of the highlight. Clamped to [1, 4.5] if ink is enabled, else to [1, 5.5].
    float specularRatio;
    float exponent;  // sharpness of the highlight, > 0
    bool inkEnabled;
    bool useSecondBackground;
};

/// Uploads the mesh and draws it into the bound framebuffer. In a frame with ink, the ink in inkFront darkens the water
/// in proportion to `inkAmount`, [0, 1]. `inkAmount` comes from the touch step of this frame, because a later touch
/// event may already have changed EffectState::inkAmount. Call it on the GL thread.
void drawWater(const EffectState& state, const WaterFrame& frame, float inkAmount);

}  // namespace velmora
