#include <algorithm>

#include "solver/clamped_row.h"
#include "solver/passes.h"
#include "solver/sampling.h"

namespace velmora {

namespace {

template <class Lane>
struct Pressures {
    Lane right, left, top, bottom;
};

template <class Lane>
Pair<Lane> projectedCell(Pair<Lane> velocity, const Pressures<Lane>& pressure, Lane gradientScale) {
    return {velocity.x - gradientScale * (pressure.right - pressure.left),
            velocity.y - gradientScale * (pressure.top - pressure.bottom)};
}

}  // namespace

void SubtractGradient::evaluate(Float2 coord, float* out) const {
    const Neighbourhood n(velocity, coord, texelSize);
    const Pressures<float> around{scalarAt(pressure, n.right), scalarAt(pressure, n.left),
                                  scalarAt(pressure, n.top), scalarAt(pressure, n.bottom)};
    storePair(out, projectedCell(pairAt(velocity, n.middle), around, gradientScale));
}

void subtractGradientKernel(const SubtractGradient& pass) {
    const FloatGrid& output = pass.output;
    if (output.data == nullptr || output.width < 1) {
        return;
    }
    const auto rowOf = [&](std::int32_t j) {
        return pass.pressure.data + std::ptrdiff_t{j} * output.width;
    };
    for (std::int32_t j = 0; j < output.height; ++j) {
        const float* middle = rowOf(j);
        const float* bottom = rowOf(std::max(j - 1, 0));
        const float* top = rowOf(std::min(j + 1, output.height - 1));
        const std::ptrdiff_t row = std::ptrdiff_t{j} * output.width * 2;
        forClampedLanes(output.width, [&]<class Lane>(std::ptrdiff_t i, std::ptrdiff_t left,
                                                      std::ptrdiff_t right) {
            const Pressures<Lane> around{load<Lane>(middle + right), load<Lane>(middle + left),
                                         load<Lane>(top + i), load<Lane>(bottom + i)};
            storePair(output.data + row + i * 2,
                      projectedCell(loadPair<Lane>(pass.velocity.data + row + i * 2), around,
                                    Lane(pass.gradientScale)));
        });
    }
}

}  // namespace velmora
