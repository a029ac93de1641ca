#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "simd/float4.h"

// Loops over the cells of a grid and their neighbours. An edge cell is its own neighbour beyond the border.

namespace velmora {

/// Pointers to row j and to the rows below and above it. If row j is the first or the last row, row j also takes
/// the place of the missing row. A row has `rowLength` floats.
struct ClampedRows {
    ClampedRows(const float* data, std::ptrdiff_t rowLength, std::int32_t j, std::int32_t height)
        : middle(data + j * rowLength),
          bottom(data + std::max(j - 1, 0) * rowLength),
          top(data + std::min(j + 1, height - 1) * rowLength) {}

    const float* middle;
    const float* bottom;
    const float* top;
};

/// Runs `cell.operator()<Floats>(i, left, right)` for each column i of a row; `left` and `right` are the columns of its
/// neighbours. The two edge columns run singly, the columns between them four at a time (see forGroups).
template <class Cell>
void forClampedGroups(std::ptrdiff_t width, Cell cell) {
    if (width == 1) {
        cell.template operator()<float>(0, 0, 0);
        return;
    }
    cell.template operator()<float>(0, 0, 1);
    forGroups(1, width - 1, [&]<class Floats>(std::ptrdiff_t i) {
        cell.template operator()<Floats>(i, i - 1, i + 1);
    });
    cell.template operator()<float>(width - 1, width - 2, width - 1);
}

}  // namespace velmora
