#include "water/mesh.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

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
    forColumns(0, rows, [=]<class Floats>(std::ptrdiff_t row, Floats rowNumber) {
        storePoints(positions + row * 3, Floats(x), Floats(top) - rowNumber * Floats(stepY));
    });
}

constexpr int quadIndices = 6;
constexpr int quadsTogether = 4;  // their indices fill three vectors

/// The quad left of and above a vertex, as two triangles.
void writeQuad(std::uint16_t* indices, std::uint32_t bottomRight, std::uint32_t rows) {
    const std::uint32_t topLeft = bottomRight - rows - 1;
    const std::uint32_t vertices[quadIndices] = {topLeft, bottomRight - rows, bottomRight,
                                                 topLeft, bottomRight,        bottomRight - 1};
    std::transform(std::begin(vertices), std::end(vertices), indices,
                   [](std::uint32_t vertex) { return static_cast<std::uint16_t>(vertex); });
}

/// The quads above mesh row `row`, from left to right. From one quad to the next all indices grow
/// by the vertices of a column. Returns the place after them.
std::uint16_t* writeQuadRow(std::uint16_t* indices, const MeshShape& shape, int row) {
    const auto rows = static_cast<std::uint32_t>(shape.rows);
    const auto writeAt = [&](int column) {
        writeQuad(indices,
                  static_cast<std::uint32_t>(column) * rows + static_cast<std::uint32_t>(row),
                  rows);
        indices += quadIndices;
    };
    int column = 1;
    for (; column < std::min(shape.columns, 1 + quadsTogether); ++column) {
        writeAt(column);
    }
    if (column <= quadsTogether) {
        return indices;
    }
    const Short8 growth(static_cast<std::uint16_t>(quadsTogether * rows));
    Short8 first = loadShorts(indices - 24);
    Short8 second = loadShorts(indices - 16);
    Short8 third = loadShorts(indices - 8);
    for (; column + quadsTogether <= shape.columns; column += quadsTogether) {
        store(indices, first = first + growth);
        store(indices + 8, second = second + growth);
        store(indices + 16, third = third + growth);
        indices += quadIndices * quadsTogether;
    }
    for (; column < shape.columns; ++column) {
        writeAt(column);
    }
    return indices;
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
    for (int row = 1; row < shape.rows; ++row) {
        indices = writeQuadRow(indices, shape, row);
    }
}

}  // namespace velmora
