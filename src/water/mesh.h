#pragma once

#include <cstdint>

namespace velmora {

/// A water mesh: columns x rows vertices, column by column from left to right, each from top to
/// bottom, on a rectangle of width x height mesh units centred on the origin, x to the right, y up.
struct MeshShape {
    int width;
    int height;
    int columns;
    int rows;
};

/// Writes x, y, 0 of the first `vertexCount` vertices: 3 * vertexCount floats. Any thread.
void writeMeshPositions(float* positions, int vertexCount, const MeshShape& shape);

/// Writes the triangle list: 6 * (columns - 1) * (rows - 1) indices, modulo 65536; the quads row by
/// row from the top, each as two counter-clockwise triangles. Any thread.
void writeMeshIndices(std::uint16_t* indices, const MeshShape& shape);

}  // namespace velmora
