#pragma once

#include <cstdint>

#include "effect/effect_state.h"

namespace velmora {

/// What the host hands to every frame's water draw.
struct WaterFrame {
    const float* positions;  // 3 floats a vertex, mesh units
    const float* heights;    // 3 floats a vertex: its height, that of a neighbour along x, along y
    const std::uint16_t* indices;  // triangle list
    std::int32_t positionCount;    // floats
    std::int32_t heightCount;      // floats
    std::int32_t indexCount;
    const float* mvpMatrix;      // 16 floats, column-major
    std::int32_t meshSizeWidth;  // mesh units
    std::int32_t meshSizeHeight;
    std::int32_t numDetailsWidth;  // vertices across
    std::int32_t numDetailsHeight;
    float refractiveIndex;
    float alpha;             // weight of the sheen
    float alphaRatio1Scale;  // factor of alpha
    float alphaRatio2Scale;  // takes no part in the picture
    float fresnelRatio;
    float specularRatio;
    float exponent;
    bool inkEnabled;
    bool useSecondBackground;
};

/// Uploads the mesh and draws it into the bound framebuffer; with ink, darkened by inkFront in
/// proportion to `inkAmount`. GL thread.
void drawWater(const EffectState& state, const WaterFrame& frame, float inkAmount);

}  // namespace velmora
