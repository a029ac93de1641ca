#include <algorithm>

#include "solver/passes.h"
#include "solver/sampling.h"

namespace velmora {

namespace {

template <class Lane>
Lane relaxed(const Jacobi& pass, Lane left, Lane right, Lane bottom, Lane top, Lane b) {
    return (left + right + bottom + top + Lane(pass.alpha) * b) * Lane(pass.rbeta);
}

void clearBorder(const FloatGrid& grid) {
    const std::ptrdiff_t cells = std::ptrdiff_t{grid.width} * grid.height;
    std::fill_n(grid.data, std::min<std::ptrdiff_t>(grid.width, cells), 0.0f);
    for (std::ptrdiff_t row = 0; row < cells; row += grid.width) {
        grid.data[row] = 0.0f;
        grid.data[row + grid.width - 1] = 0.0f;
    }
    std::fill_n(grid.data + std::max<std::ptrdiff_t>(cells - grid.width, 0),
                std::min<std::ptrdiff_t>(grid.width, cells), 0.0f);
}

}  // namespace

void Jacobi::evaluate(Float2 coord, float* out) const {
    const Neighbourhood n(x, coord, texelSize);
    *out = relaxed(*this, scalarAt(x, n.left), scalarAt(x, n.right), scalarAt(x, n.bottom),
                   scalarAt(x, n.top), scalarAt(b, n.middle));
}

void jacobiSweep(const Jacobi& pass) {
    const FloatGrid& output = pass.output;
    if (output.data == nullptr) {
        return;
    }
    clearBorder(output);
    for (std::int32_t j = 1; j < output.height - 1; ++j) {
        const std::ptrdiff_t row = std::ptrdiff_t{j} * output.width;
        const float* x = pass.x.data + row;
        forLanes(1, output.width - 1, [&]<class Lane>(std::ptrdiff_t i) {
            store(output.data + row + i,
                  relaxed(pass, load<Lane>(x + i - 1), load<Lane>(x + i + 1),
                          load<Lane>(x + i - output.width), load<Lane>(x + i + output.width),
                          load<Lane>(pass.b.data + row + i)));
        });
    }
}

}  // namespace velmora
