#include "water/mesh.h"

#include <algorithm>
#include <cstddef>

#include "simd/float4.h"

namespace velmora {

namespace {

/// Steps between `details` vertices; wide enough to subtract from any int.
float gaps(int details) {
    return static_cast<float>(std::int64_t{details} - 1);
}

/// One column of vertices at x: rows from the top at `top` downwards. Walking column by column
/// needs no division, so a vertex lands in its column and row exactly, however tall the mesh is.
void writeColumn(float* positions, int rows, float x, float top, float stepY) {
    forLanes(0, rows, [&]<class Lane>(std::ptrdiff_t row) {
        const Lane y = Lane(top) - ramp<Lane>(static_cast<float>(row)) * Lane(stepY);
        storePoints(positions + row * 3, Lane(x), y);
    });
}

}  // namespace

void writeMeshPositions(float* positions, int vertexCount, const MeshShape& shape) {
    if (shape.rows < 1) {
        return;
    }
    const float stepX = static_cast<float>(shape.width) / gaps(shape.columns);
    const float stepY = static_cast<float>(shape.height) / gaps(shape.rows);
    const float halfWidth = static_cast<float>(shape.width) * 0.5f;
    const float halfHeight = static_cast<float>(shape.height) * 0.5f;
    int column = 0;
    for (int left = vertexCount; left > 0; left -= shape.rows, ++column) {
        const float x = static_cast<float>(column) * stepX - halfWidth;
        writeColumn(positions, std::min(left, shape.rows), x, halfHeight, stepY);
        positions += std::ptrdiff_t{3} * shape.rows;
    }
}

void writeMeshIndices(std::uint16_t* indices, const MeshShape& shape) {
    const auto put = [&](std::uint32_t vertex) { *indices++ = static_cast<std::uint16_t>(vertex); };
    const auto rows = static_cast<std::uint32_t>(shape.rows);
    for (int row = 1; row < shape.rows; ++row) {
        for (int column = 1; column < shape.columns; ++column) {
            const auto bottomRight =
                static_cast<std::uint32_t>(column) * rows + static_cast<std::uint32_t>(row);
            const std::uint32_t topLeft = bottomRight - rows - 1;
            put(topLeft);
            put(bottomRight - rows);
            put(bottomRight);
            put(topLeft);
            put(bottomRight);
            put(bottomRight - 1);
        }
    }
}

}  // namespace velmora
