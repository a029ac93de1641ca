#pragma once

#include <cstdint>

namespace velmora {

/// Shape of a water mesh: columns x rows vertices on a rectangle of width x height mesh units. The centre is the
/// origin, x points right and y up. The vertices are ordered by column from left to right, and within a column from top
/// to bottom.
struct MeshShape {
    int width;
    int height;
    int columns;
    int rows;
};

/// Writes the positions (x, y, 0) of the first `vertexCount` vertices, 3 floats each. May be called on any thread.
void writeMeshPositions(float* positions, int vertexCount, const MeshShape& shape);

/// Writes the triangle list: 6 * (columns - 1) * (rows - 1) indices modulo 65536. The quads are ordered row by row from
/// the top. Each quad is two counter-clockwise triangles. May be called on any thread.
void writeMeshIndices(std::uint16_t* indices, const MeshShape& shape);

}  // namespace velmora
