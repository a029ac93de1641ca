#include <algorithm>
#include <utility>

#include "solver/passes.h"
#include "solver/sampling.h"

namespace velmora {

namespace {

struct Weights {
    explicit Weights(const Jacobi& pass) : alpha(pass.alpha), rbeta(pass.rbeta) {}
    float alpha, rbeta;
};

template <class Floats>
Floats relaxed(const Weights& weights, Floats left, Floats right, Floats bottom, Floats top,
               Floats b) {
    return (left + right + bottom + top + Floats(weights.alpha) * b) * Floats(weights.rbeta);
}

void clearBorder(const FloatGrid& grid) {
    const std::ptrdiff_t cells = std::ptrdiff_t{grid.width} * grid.height;
    const std::ptrdiff_t row = std::min<std::ptrdiff_t>(grid.width, cells);
    std::fill_n(grid.data, row, 0.0f);
    std::fill_n(grid.data + cells - row, row, 0.0f);
    for (std::ptrdiff_t start = 0; start < cells; start += grid.width) {
        grid.data[start] = 0.0f;
        grid.data[start + grid.width - 1] = 0.0f;
    }
}

/// One iteration over the interior: from `x` into `output`.
void sweep(const Jacobi& pass) {
    const Weights weights(pass);
    const std::ptrdiff_t width = pass.output.width;
    for (std::ptrdiff_t j = 1; j < pass.output.height - 1; ++j) {
        const float* const middle = pass.x.data + j * width;
        const float* const bottom = middle - width;
        const float* const top = middle + width;
        const float* const b = pass.b.data + j * width;
        float* const out = pass.output.data + j * width;
        forGroups(1, width - 1, [=]<class Floats>(std::ptrdiff_t i) {
            store(out + i,
                  relaxed(weights, load<Floats>(middle + i - 1), load<Floats>(middle + i + 1),
                          load<Floats>(bottom + i), load<Floats>(top + i), load<Floats>(b + i)));
        });
    }
}

}  // namespace

void Jacobi::evaluate(Float2 coord, float* out) const {
    const Neighbourhood n(x, coord, texelSize);
    *out = relaxed(Weights(*this), scalarAt(x, n.left), scalarAt(x, n.right), scalarAt(x, n.bottom),
                   scalarAt(x, n.top), scalarAt(b, n.middle));
}

void jacobiSweeps(Jacobi& pass, std::int32_t count) {
    const bool exists = pass.output.data != nullptr;
    if (exists) {
        clearBorder(pass.output);
    }
    for (std::int32_t iteration = 0; iteration < count; ++iteration) {
        if (exists) {
            sweep(pass);
        }
        std::swap(pass.x, pass.output);
    }
}

}  // namespace velmora
