#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "solver/passes.h"
#include "solver/sampling.h"
#include "solver/transposed_layout.h"

namespace velmora {

namespace {

/// Returns a cell's pressure after one Jacobi iteration. `source` is alpha * b, and `rbeta` is 1 / beta (see class
/// Jacobi in passes.h).
template <class Floats>
Floats relaxed(Floats left, Floats right, Floats bottom, Floats top, Floats source, Floats rbeta) {
    return (left + right + bottom + top + source) * rbeta;
}

void clearBorder(const FloatGrid& grid) {
    const std::ptrdiff_t width = grid.width;
    const std::ptrdiff_t lastRow = (std::ptrdiff_t{grid.height} - 1) * width;
    if (width < 1 || lastRow < 0) {
        return;
    }
    std::fill_n(grid.data, width, 0.0f);
    std::fill_n(grid.data + lastRow, width, 0.0f);
    for (std::ptrdiff_t start = 0; start <= lastRow; start += width) {
        grid.data[start] = 0.0f;
        grid.data[start + width - 1] = 0.0f;
    }
}

/// Runs one iteration for two adjacent rows of `length` floats in transposed layout. Each row is a neighbour of the
/// other, so both use the same loaded cells. One row at a time would need more loads per cell, and the loads would
/// limit the speed.
void relaxTwoRows(const float* below, const float* lower, const float* upper, const float* above,
                  const float* source, float* out, std::ptrdiff_t length, float rbeta) {
    const Float4 border(0.0f);
    const float* const upperSource = source + length;
    float* const upperOut = out + length;
    Float4 cells = loadAligned(lower);
    Float4 upperCells = loadAligned(upper);
    const Float4 beyond = slideLeft(cells, border);
    const Float4 upperBeyond = slideLeft(upperCells, border);
    Float4 left = slideRight(border, loadAligned(lower + length - 4));
    Float4 upperLeft = slideRight(border, loadAligned(upper + length - 4));
    const auto relaxGroups = [&](std::ptrdiff_t at, Float4 right, Float4 upperRight) {
        store(out + at, relaxed(left, right, loadAligned(below + at), upperCells,
                                loadAligned(source + at), Float4(rbeta)));
        store(upperOut + at, relaxed(upperLeft, upperRight, cells, loadAligned(above + at),
                                     loadAligned(upperSource + at), Float4(rbeta)));
        left = cells;
        cells = right;
        upperLeft = upperCells;
        upperCells = upperRight;
    };
    for (std::ptrdiff_t at = 0; at < length - 4; at += 4) {
        relaxGroups(at, loadAligned(lower + at + 4), loadAligned(upper + at + 4));
    }
    relaxGroups(length - 4, beyond, upperBeyond);
}

/// Runs one iteration in transposed layout, two rows at a time. If the number of rows is odd, the last pair computes
/// one row again.
void relaxTransposed(const TransposedLayout& layout, const float* x, const float* source,
                     float* out, const float* border, float rbeta) {
    const std::ptrdiff_t length = layout.rowLength();
    for (std::ptrdiff_t next = 0; next < layout.rows; next += 2) {
        const std::ptrdiff_t row = std::min(next, layout.rows - 2);
        const float* const lower = x + row * length;
        const float* const upper = lower + length;
        float* const to = out + row * length;
        relaxTwoRows(row == 0 ? border : lower - length, lower, upper,
                     row == layout.rows - 2 ? border : upper + length, source + row * length, to,
                     length, rbeta);
        layout.clearPadding(to);
        layout.clearPadding(to + length);
    }
}

/// Runs the first iteration. All pressures are still 0, so it reads no neighbours.
void relaxFromRest(const TransposedLayout& layout, const float* source, float* out, float rbeta) {
    const Float4 rest(0.0f);
    for (std::ptrdiff_t row = 0; row < layout.rows; ++row) {
        for (std::ptrdiff_t at = 0; at < layout.rowLength(); at += 4) {
            store(out + at,
                  relaxed(rest, rest, rest, rest, loadAligned(source + at), Float4(rbeta)));
        }
        layout.clearPadding(out);
        source += layout.rowLength();
        out += layout.rowLength();
    }
}

/// Returns true if the transposed layout, with its padding and alignment, fits into the grid's block.
bool fitsTransposed(const FloatGrid& output) {
    const TransposedLayout layout(output);
    return output.data != nullptr && layout.groups >= 4 && layout.rows >= 2 &&
           layout.cells() + 3 <= layout.width * output.height;
}

/// Runs all iterations in transposed layout. The workspace holds the pressures before and after an iteration. The
/// memory of the output grid holds alpha * b until the result replaces it at the end.
void relaxAllTransposed(Jacobi& pass, std::int32_t count, float* workspace) {
    const TransposedLayout layout(pass.output);
    float* x = alignedUp(workspace);
    float* out = x + layout.cells();
    float* const source = alignedUp(pass.output.data);
    transposeGrid(layout, pass.b, pass.alpha, source);
    alignas(16) float border[maxGridSide];
    std::fill_n(border, layout.rowLength(), 0.0f);
    for (std::int32_t iteration = 0; iteration < count; ++iteration) {
        if (iteration == 0) {
            relaxFromRest(layout, source, out, pass.rbeta);
        } else {
            relaxTransposed(layout, x, source, out, border, pass.rbeta);
        }
        std::swap(x, out);
        std::swap(pass.x, pass.output);
    }
    restoreGrid(layout, x, pass.x);
    restoreGrid(layout, out, pass.output);
    clearBorder(pass.x);
    clearBorder(pass.output);
}

}  // namespace

void Jacobi::evaluate(Float2 coord, float* out) const {
    const Neighbourhood n(x, coord, texelSize);
    out[0] = relaxed(scalarAt(x, n.left), scalarAt(x, n.right), scalarAt(x, n.bottom),
                     scalarAt(x, n.top), alpha * scalarAt(b, n.middle), rbeta);
}

void jacobiSweep(const Jacobi& pass) {
    clearBorder(pass.output);
    const float alpha = pass.alpha;
    const float rbeta = pass.rbeta;
    const std::ptrdiff_t width = pass.output.width;
    for (std::ptrdiff_t j = 1; j < pass.output.height - 1; ++j) {
        const float* const middle = pass.x.data + j * width;
        const float* const bottom = middle - width;
        const float* const top = middle + width;
        const float* const b = pass.b.data + j * width;
        float* const out = pass.output.data + j * width;
        forGroups(1, width - 1, [=]<class Floats>(std::ptrdiff_t i) {
            store(out + i, relaxed(load<Floats>(middle + i - 1), load<Floats>(middle + i + 1),
                                   load<Floats>(bottom + i), load<Floats>(top + i),
                                   Floats(alpha) * load<Floats>(b + i), Floats(rbeta)));
        });
    }
}

void jacobiKernel(Jacobi& pass, std::int32_t count, const FloatGrid& workspace) {
    if (count > 1 && workspace.data != nullptr && fitsTransposed(pass.output)) {
        relaxAllTransposed(pass, count, workspace.data);
        return;
    }
    clearGrid(pass.x, 1);
    for (std::int32_t iteration = 0; iteration < count; ++iteration) {
        if (pass.output.data != nullptr) {
            jacobiSweep(pass);
        }
        std::swap(pass.x, pass.output);
    }
}

}  // namespace velmora
