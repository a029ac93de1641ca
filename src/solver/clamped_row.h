#pragma once

#include "simd/float4.h"

namespace velmora {

/// Runs `cell.operator()<Lane>(i, left, right)` over a row's columns with the columns of their
/// neighbours, which repeat the edge cell beyond the row: the two edge columns alone, those between
/// four at a time.
template <class Cell>
void forClampedLanes(std::ptrdiff_t width, Cell cell) {
    if (width == 1) {
        cell.template operator()<float>(0, 0, 0);
        return;
    }
    cell.template operator()<float>(0, 0, 1);
    forLanes(1, width - 1, [&]<class Lane>(std::ptrdiff_t i) {
        cell.template operator()<Lane>(i, i - 1, i + 1);
    });
    cell.template operator()<float>(width - 1, width - 2, width - 1);
}

}  // namespace velmora
