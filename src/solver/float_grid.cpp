#include "solver/float_grid.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>

namespace velmora {

namespace {

std::size_t byteCount(std::int32_t width, std::int32_t height, std::int32_t floats) {
    return sizeof(float) * static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
           static_cast<std::size_t>(floats);
}

}  // namespace

void releaseGrid(FloatGrid& grid) {
    std::free(grid.data);
    grid = {};
}

void reallocateGrid(FloatGrid& grid, std::int32_t width, std::int32_t height, std::int32_t floats) {
    releaseGrid(grid);
    if (!isGridSize(width, height)) {
        return;
    }
    if (void* const block = std::malloc(byteCount(width, height, floats))) {
        grid = {static_cast<float*>(block), width, height};
    }
}

void clearGrid(const FloatGrid& grid, std::int32_t floats) {
    if (grid.data != nullptr) {
        std::memset(grid.data, 0, byteCount(grid.width, grid.height, floats));
    }
}

}  // namespace velmora
