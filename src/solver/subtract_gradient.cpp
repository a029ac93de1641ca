#include <cstddef>
#include <cstdint>

#include "solver/clamped_row.h"
#include "solver/passes.h"
#include "solver/sampling.h"

namespace velmora {

namespace {

template <class Floats>
struct Pressures {
    Floats right, left, top, bottom;
};

template <class Floats>
Pair<Floats> scaledGradient(const Pressures<Floats>& pressure, Floats scale) {
    return {scale * (pressure.right - pressure.left), scale * (pressure.top - pressure.bottom)};
}

}  // namespace

void SubtractGradient::evaluate(Float2 coord, float* out) const {
    const Neighbourhood n(velocity, coord, texelSize);
    const Pressures<float> around{scalarAt(pressure, n.right), scalarAt(pressure, n.left),
                                  scalarAt(pressure, n.top), scalarAt(pressure, n.bottom)};
    storeDifference(out, addressOf(velocity, n.middle), scaledGradient(around, gradientScale));
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
        forClampedGroups(
            width, [=]<class Floats>(std::ptrdiff_t i, std::ptrdiff_t left, std::ptrdiff_t right) {
                const Pressures<Floats> around{
                    load<Floats>(rows.middle + right), load<Floats>(rows.middle + left),
                    load<Floats>(rows.top + i), load<Floats>(rows.bottom + i)};
                storeDifference(out + i * 2, velocity + i * 2,
                                scaledGradient(around, Floats(gradientScale)));
            });
    }
}

}  // namespace velmora
