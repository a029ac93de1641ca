#include "water/mesh.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "simd/float4.h"

namespace velmora {

namespace {

/// Returns the number of gaps between `details` vertices in a line. The 64-bit subtraction cannot overflow.
float gaps(int details) {
    return static_cast<float>(std::int64_t{details} - 1);
}

void storePoint(float* to, float x, float y) {
    to[0] = x;
    to[1] = y;
    to[2] = 0.0f;
}

/// Writes the first column of vertices. All are at `x`; the first is at y = `top`, and each of the others `stepY`
/// lower.
void writeFirstColumn(float* positions, int rows, float x, float top, float stepY) {
    for (int row = 0; row < rows; ++row) {
        storePoint(positions + row * 3, x, top - static_cast<float>(row) * stepY);
    }
}

/// Writes a column of vertices at `x` and copies y and z from the first column. Four vertices of 3 floats fill three
/// vectors.
void writeColumn(float* positions, const float* first, std::ptrdiff_t rows, float x) {
    if (rows < 4) {
        for (std::ptrdiff_t row = 0; row < rows; ++row) {
            storePoint(positions + row * 3, x, first[row * 3 + 1]);
        }
        return;
    }
    // Three vectors hold four vertices: (x y 0 x), (y 0 x y), (0 x y 0). The masks select the lanes that hold x.
    const Float4 zero(0.0f);
    const auto isX0 = Float4(1.0f, 0.0f, 0.0f, 1.0f) > zero;
    const auto isX1 = Float4(0.0f, 0.0f, 1.0f, 0.0f) > zero;
    const auto isX2 = Float4(0.0f, 1.0f, 0.0f, 0.0f) > zero;
    forBlocksOfFour(rows, [=](std::ptrdiff_t row) {
        const float* const from = first + row * 3;
        float* const to = positions + row * 3;
        store(to, select(isX0, Float4(x), load<Float4>(from)));
        store(to + 4, select(isX1, Float4(x), load<Float4>(from + 4)));
        store(to + 8, select(isX2, Float4(x), load<Float4>(from + 8)));
    });
}

constexpr std::ptrdiff_t quadIndices = 6;

/// Writes the two triangles of a quad. `bottomRight` is the quad's lower right vertex; the mesh has `rows` rows.
void writeQuad(std::uint16_t* indices, std::int64_t bottomRight, std::int64_t rows) {
    const std::int64_t topLeft = bottomRight - rows - 1;
    const std::int64_t vertices[quadIndices] = {topLeft, topLeft + 1, bottomRight,
                                                topLeft, bottomRight, bottomRight - 1};
    std::transform(std::begin(vertices), std::end(vertices), indices,
                   [](std::int64_t vertex) { return static_cast<std::uint16_t>(vertex); });
}

/// Vertex indices of four quads that are side by side.
struct FourQuads {
    Short8 first, second, third;
};

FourQuads loadQuads(const std::uint16_t* from) {
    return {loadShorts(from), loadShorts(from + 8), loadShorts(from + 16)};
}

void store(std::uint16_t* to, const FourQuads& quads) {
    store(to, quads.first);
    store(to + 8, quads.second);
    store(to + 16, quads.third);
}

/// Returns the quads with `vertices` added to every index.
FourQuads shifted(const FourQuads& quads, std::int64_t vertices) {
    const Short8 growth(static_cast<std::uint16_t>(vertices));
    return {quads.first + growth, quads.second + growth, quads.third + growth};
}

/// Writes a row of `count` quads, at least four. `first` holds the leftmost four quads.
void writeQuadRow(std::uint16_t* indices, FourQuads first, std::ptrdiff_t count,
                  std::int64_t rows) {
    const FourQuads last = shifted(first, (count - 4) * rows);
    for (std::ptrdiff_t quad = 0; quad < count - 4; quad += 4) {
        store(indices + quad * quadIndices, first);
        first = shifted(first, 4 * rows);
    }
    store(indices + (count - 4) * quadIndices, last);
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
    // The loop counts columns instead of dividing a vertex index by `rows`, so column and row are exact for any mesh.
    float* to = positions;
    int column = 0;
    for (int left = vertexCount; left > 0; left -= shape.rows, ++column) {
        const int rows = std::min(left, shape.rows);
        const float x = static_cast<float>(column) * stepX - halfWidth;
        if (column == 0) {
            writeFirstColumn(to, rows, x, halfHeight, stepY);
        } else {
            writeColumn(to, positions, rows, x);
        }
        to += std::ptrdiff_t{3} * shape.rows;
    }
}

void writeMeshIndices(std::uint16_t* indices, const MeshShape& shape) {
    const std::ptrdiff_t count = std::ptrdiff_t{shape.columns} - 1;
    if (shape.rows < 2 || count < 1) {
        return;
    }
    for (std::ptrdiff_t quad = 0; quad < std::min<std::ptrdiff_t>(count, 4); ++quad) {
        writeQuad(indices + quad * quadIndices, (quad + 1) * shape.rows + 1, shape.rows);
    }
    const std::ptrdiff_t rowLength = count * quadIndices;
    if (count < 4) {
        for (std::ptrdiff_t i = rowLength; i < rowLength * (shape.rows - 1); ++i) {
            indices[i] = static_cast<std::uint16_t>(indices[i - rowLength] + 1);
        }
        return;
    }
    const FourQuads first = loadQuads(indices);
    for (int row = 0; row < shape.rows - 1; ++row) {
        writeQuadRow(indices + row * rowLength, shifted(first, row), count, shape.rows);
    }
}

}  // namespace velmora
