#pragma once

#include <cstdint>

#include "effect/effect_state.h"

namespace velmora {

/// What the host hands to every frame's water draw: one record, because so many ints and floats in a
/// row would be mixed up unseen.
struct WaterFrame {
    const float* positions;  // 3 floats a vertex, mesh units, y up
    const float* heights;    // 3 floats a vertex: its height, that of a neighbour along x, along y,
                             // [-100, 100], 4 to a mesh unit
    const std::uint16_t* indices;  // triangle list
    std::int32_t positionCount;    // floats
    std::int32_t heightCount;      // floats
    std::int32_t indexCount;
    const float* mvpMatrix;      // 16 floats, column-major
    std::int32_t meshSizeWidth;  // mesh units
    std::int32_t meshSizeHeight;
    std::int32_t numDetailsWidth;  // vertices across
    std::int32_t numDetailsHeight;
    float refractiveIndex;   // of the water to the air, 1: bends nothing
    float alpha;             // weight of the sheen, >= 0
    float alphaRatio1Scale;  // factor of alpha, >= 0
    float alphaRatio2Scale;  // takes no part in the picture
    float fresnelRatio;      // weight of the slopes that face the light, >= 0
    float specularRatio;     // peak of the highlight, a factor; acts in [1, 4.5], without ink 5.5
    float exponent;          // sharpness of the highlight, > 0
    bool inkEnabled;
    bool useSecondBackground;
};

/// Uploads the mesh and draws it into the bound framebuffer; with ink, darkened by inkFront in
/// proportion to `inkAmount`, [0, 1]: the record's of the frame's touch step, which an event may have
/// changed since. GL thread.
void drawWater(const EffectState& state, const WaterFrame& frame, float inkAmount);

}  // namespace velmora
