#pragma once

#include <cstdint>

namespace velmora {

/// A water mesh of columns x rows vertices on a rectangle of width x height mesh units, centred on the origin, x to the
/// right, y up. The vertices are ordered by column from left to right, each column from top to bottom.
struct MeshShape {
    int width;
    int height;
    int columns;
    int rows;
};

/// Writes the positions (x, y, 0) of the first `vertexCount` vertices: 3 * vertexCount floats. Any thread.
void writeMeshPositions(float* positions, int vertexCount, const MeshShape& shape);

/// Writes the triangle list: 6 * (columns - 1) * (rows - 1) indices modulo 65536. The quads are ordered row by row from
/// the top, and each is two counter-clockwise triangles. Any thread.
void writeMeshIndices(std::uint16_t* indices, const MeshShape& shape);

}  // namespace velmora
