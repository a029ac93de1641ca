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
    const float gradientScale = pass.gradientScale;
    const std::ptrdiff_t width = output.width;
    for (std::int32_t j = 0; j < output.height; ++j) {
        const ClampedRows rows(pass.pressure.data, width, j, output.height);
        const float* const velocity = pass.velocity.data + j * width * 2;
        float* const out = output.data + j * width * 2;
        forClampedLanes(
            width, [=]<class Lane>(std::ptrdiff_t i, std::ptrdiff_t left, std::ptrdiff_t right) {
                const Pressures<Lane> around{load<Lane>(rows.middle + right),
                                             load<Lane>(rows.middle + left),
                                             load<Lane>(rows.top + i), load<Lane>(rows.bottom + i)};
                storePair(out + i * 2, projectedCell(loadPair<Lane>(velocity + i * 2), around,
                                                     Lane(gradientScale)));
            });
    }
}

}  // namespace velmora
