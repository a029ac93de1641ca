#include <cstddef>
#include <cstdint>

#include "solver/clamped_row.h"
#include "solver/passes.h"
#include "solver/sampling.h"

namespace velmora {

namespace {

/// Velocity components on the four sides of a cell: x of the right and left neighbours, y of the upper and lower
/// neighbours.
template <class Floats>
struct Flow {
    Floats right, left, top, bottom;
};

template <class Floats>
Floats divergenceOf(const Divergence& divergence, const Flow<Floats>& flow) {
    return ((flow.right - flow.left) + (flow.top - flow.bottom)) *
           Floats(divergence.halfInverseCellSize);
}

/// Returns the divergence that the sink subtracts at the cell with lower left corner (i, j). Returns 0 outside the
/// sink's radius.
template <class Floats>
Floats sinkAt(const Divergence& divergence, Floats i, Floats j) {
    const Floats dx = Floats(divergence.sourcePoint.x) - i * Floats(divergence.cellToScreen.x);
    const Floats dy = Floats(divergence.sourcePoint.y) - j * Floats(divergence.cellToScreen.y);
    const auto near = dx * dx + dy * dy < Floats(divergence.sourceRadius * divergence.sourceRadius);
    return select(near, Floats(divergence.sourceStrength), Floats(0.0f));
}

/// Returns true if the sink can reach a cell of row j.
bool hasSink(const Divergence& divergence, float j) {
    const float dy = divergence.sourcePoint.y - j * divergence.cellToScreen.y;
    return dy * dy < divergence.sourceRadius * divergence.sourceRadius;
}

void divergeRow(const Divergence& pass, const ClampedRows& clampedRows, float* out,
                std::ptrdiff_t width) {
    const Divergence divergence = pass;
    const ClampedRows rows = clampedRows;
    forClampedGroups(width, [=]<class Floats>(std::ptrdiff_t i, std::ptrdiff_t left,
                                              std::ptrdiff_t right) {
        const Flow<Floats> flow{
            loadPair<Floats>(rows.middle + right * 2).x, loadPair<Floats>(rows.middle + left * 2).x,
            loadPair<Floats>(rows.top + i * 2).y, loadPair<Floats>(rows.bottom + i * 2).y};
        store(out + i, divergenceOf(divergence, flow));
    });
}

void sinkRow(const Divergence& pass, float* out, std::ptrdiff_t width, float j) {
    const Divergence divergence = pass;
    forColumns(0, width, [=]<class Floats>(std::ptrdiff_t i, Floats column) {
        store(out + i, load<Floats>(out + i) - sinkAt(divergence, column, Floats(j)));
    });
}

}  // namespace

void ComputeDivergence::evaluate(Float2 coord, float* out) const {
    const Neighbourhood n(velocity, coord, texelSize);
    const Flow<float> flow{pairAt(velocity, n.right).x, pairAt(velocity, n.left).x,
                           pairAt(velocity, n.top).y, pairAt(velocity, n.bottom).y};
    out[0] = divergenceOf(*this, flow) - sinkAt(*this, coord.x - 0.5f, coord.y - 0.5f);
}

void computeDivergenceKernel(const ComputeDivergence& pass) {
    const FloatGrid& output = pass.output;
    if (output.data == nullptr || output.width < 1) {
        return;
    }
    const std::ptrdiff_t width = output.width;
    for (std::int32_t row = 0; row < output.height; ++row) {
        float* const out = output.data + row * width;
        const auto j = static_cast<float>(row);
        divergeRow(pass, {pass.velocity.data, width * 2, row, output.height}, out, width);
        if (hasSink(pass, j)) {
            sinkRow(pass, out, width, j);
        }
    }
}

}  // namespace velmora
