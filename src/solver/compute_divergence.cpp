#include <algorithm>

#include "solver/clamped_row.h"
#include "solver/passes.h"
#include "solver/sampling.h"

namespace velmora {

namespace {

/// The numbers of a pass, by value.
struct Divergence {
    explicit Divergence(const ComputeDivergence& pass)
        : cellToScreen(pass.cellToScreen),
          sourcePoint(pass.sourcePoint),
          halfInverseCellSize(pass.halfInverseCellSize),
          sourceStrength(pass.sourceStrength),
          sourceRadiusSquared(pass.sourceRadius * pass.sourceRadius) {}

    Float2 cellToScreen, sourcePoint;
    float halfInverseCellSize, sourceStrength, sourceRadiusSquared;
};

/// x components of the right and left neighbour, y components of the upper and lower one.
template <class Lane>
struct Flow {
    Lane right, left, top, bottom;
};

template <class Lane>
Lane divergenceOf(const Divergence& divergence, const Flow<Lane>& flow) {
    return ((flow.right - flow.left) + (flow.top - flow.bottom)) *
           Lane(divergence.halfInverseCellSize);
}

/// What the sink takes from the cell whose corner is (i, j): its strength, or 0 far from it.
template <class Lane>
Lane sinkAt(const Divergence& divergence, Lane i, Lane j) {
    const Lane dx = Lane(divergence.sourcePoint.x) - i * Lane(divergence.cellToScreen.x);
    const Lane dy = Lane(divergence.sourcePoint.y) - j * Lane(divergence.cellToScreen.y);
    const auto near = dx * dx + dy * dy < Lane(divergence.sourceRadiusSquared);
    return select(near, Lane(divergence.sourceStrength), Lane(0.0f));
}

/// Whether the sink can reach a cell of row j.
bool hasSink(const Divergence& divergence, float j) {
    const float dy = divergence.sourcePoint.y - j * divergence.cellToScreen.y;
    return dy * dy < divergence.sourceRadiusSquared;
}

void divergeRow(const Divergence& pass, const ClampedRows& clampedRows, float* out,
                std::ptrdiff_t width) {
    const Divergence divergence = pass;
    const ClampedRows rows = clampedRows;
    forClampedLanes(
        width, [=]<class Lane>(std::ptrdiff_t i, std::ptrdiff_t left, std::ptrdiff_t right) {
            const Flow<Lane> flow{
                loadPair<Lane>(rows.middle + right * 2).x, loadPair<Lane>(rows.middle + left * 2).x,
                loadPair<Lane>(rows.top + i * 2).y, loadPair<Lane>(rows.bottom + i * 2).y};
            store(out + i, divergenceOf(divergence, flow));
        });
}

void sinkRow(const Divergence& pass, float* out, std::ptrdiff_t width, float j) {
    const Divergence divergence = pass;
    forColumns(0, width, [=]<class Lane>(std::ptrdiff_t i, Lane column) {
        store(out + i, load<Lane>(out + i) - sinkAt(divergence, column, Lane(j)));
    });
}

}  // namespace

void ComputeDivergence::evaluate(Float2 coord, float* out) const {
    const Neighbourhood n(velocity, coord, texelSize);
    const Flow<float> flow{pairAt(velocity, n.right).x, pairAt(velocity, n.left).x,
                           pairAt(velocity, n.top).y, pairAt(velocity, n.bottom).y};
    const Divergence divergence(*this);
    *out = divergenceOf(divergence, flow) - sinkAt(divergence, coord.x - 0.5f, coord.y - 0.5f);
}

void computeDivergenceKernel(const ComputeDivergence& pass) {
    const FloatGrid& output = pass.output;
    if (output.data == nullptr || output.width < 1) {
        return;
    }
    const Divergence divergence(pass);
    const std::ptrdiff_t width = output.width;
    for (std::int32_t row = 0; row < output.height; ++row) {
        float* const out = output.data + row * width;
        const auto j = static_cast<float>(row);
        divergeRow(divergence, {pass.velocity.data, width * 2, row, output.height}, out, width);
        if (hasSink(divergence, j)) {
            sinkRow(divergence, out, width, j);
        }
    }
}

}  // namespace velmora
