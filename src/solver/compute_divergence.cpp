#include <algorithm>

#include "solver/clamped_row.h"
#include "solver/passes.h"
#include "solver/sampling.h"

namespace velmora {

namespace {

/// x components of the right and left neighbour, y components of the upper and lower one.
template <class Lane>
struct Flow {
    Lane right, left, top, bottom;
};

/// Divergence at the cell whose corner is (i, j), less the sink where that corner lies near the
/// source point.
template <class Lane>
Lane divergenceCell(const ComputeDivergence& pass, Lane i, Lane j, const Flow<Lane>& flow) {
    const Lane divergence =
        ((flow.right - flow.left) + (flow.top - flow.bottom)) * Lane(pass.halfInverseCellSize);
    const Lane dx = Lane(pass.sourcePoint.x) - i * Lane(pass.cellToScreen.x);
    const Lane dy = Lane(pass.sourcePoint.y) - j * Lane(pass.cellToScreen.y);
    const auto near = dx * dx + dy * dy < Lane(pass.sourceRadius * pass.sourceRadius);
    return select(near, divergence - Lane(pass.sourceStrength), divergence);
}

}  // namespace

void ComputeDivergence::evaluate(Float2 coord, float* out) const {
    const Neighbourhood n(velocity, coord, texelSize);
    const Flow<float> flow{pairAt(velocity, n.right).x, pairAt(velocity, n.left).x,
                           pairAt(velocity, n.top).y, pairAt(velocity, n.bottom).y};
    *out = divergenceCell(*this, coord.x - 0.5f, coord.y - 0.5f, flow);
}

void computeDivergenceKernel(const ComputeDivergence& pass) {
    const FloatGrid& output = pass.output;
    if (output.data == nullptr || output.width < 1) {
        return;
    }
    const auto rowOf = [&](std::int32_t j) {
        return pass.velocity.data + std::ptrdiff_t{j} * output.width * 2;
    };
    for (std::int32_t j = 0; j < output.height; ++j) {
        const float* middle = rowOf(j);
        const float* bottom = rowOf(std::max(j - 1, 0));
        const float* top = rowOf(std::min(j + 1, output.height - 1));
        float* out = output.data + std::ptrdiff_t{j} * output.width;
        forClampedLanes(output.width, [&]<class Lane>(std::ptrdiff_t i, std::ptrdiff_t left,
                                                      std::ptrdiff_t right) {
            const Flow<Lane> flow{loadPair<Lane>(middle + right * 2).x,
                                  loadPair<Lane>(middle + left * 2).x,
                                  loadPair<Lane>(top + i * 2).y, loadPair<Lane>(bottom + i * 2).y};
            store(out + i, divergenceCell(pass, ramp<Lane>(static_cast<float>(i)),
                                          Lane(static_cast<float>(j)), flow));
        });
    }
}

}  // namespace velmora
