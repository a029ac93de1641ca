#pragma once

#include <cstdint>

namespace velmora {

/// An off-screen RGBA8 colour target of GL names. It exists if `framebuffer` is not 0.
struct RenderTarget {
    std::uint32_t framebuffer;
    std::uint32_t texture;  // colour attachment 0: linear filters, clamped to the edge
    std::int32_t width;     // texels
    std::int32_t height;
};

/// Makes a target, clears it to 0 and leaves the default framebuffer bound. GL thread.
RenderTarget createRenderTarget(int width, int height);

/// Clears the bound framebuffer to density 0. GL thread.
void clearBoundTarget();

/// Deletes the target's framebuffer and texture, if they exist. GL thread.
void deleteRenderTarget(const RenderTarget& target);

}  // namespace velmora
