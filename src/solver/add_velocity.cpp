#include <cstddef>

#include "solver/passes.h"
#include "solver/sampling.h"

namespace velmora {

namespace {

/// Returns the velocity of a cell after the stroke has pushed the flow. `centre` is the position of the cell in screen
/// pixels. The stroke pushes a cell if the point of the stroke's line that is nearest to the cell lies between
/// `previous` and `current` and is less than `radius` away. The distance uses a correctly rounded square root, because
/// estimated roots differ between processors.
template <class Floats>
Pair<Floats> pushedCell(const StrokeImpulse& stroke, Pair<Floats> centre, Pair<Floats> velocity) {
    const Pair<Floats> previous{Floats(stroke.previous.x), Floats(stroke.previous.y)};
    const Pair<Floats> normal{Floats(stroke.normal.x), Floats(stroke.normal.y)};
    const Floats t = (centre.x - previous.x) * normal.x + (centre.y - previous.y) * normal.y;
    const auto between = (t > Floats(0.0f)) & (t < Floats(stroke.length));
    if (!any(between)) {
        return velocity;  // the common case: most of the grid is before or behind the stroke
    }
    const Pair<Floats> foot{previous.x + t * normal.x, previous.y + t * normal.y};
    const Pair<Floats> outward{centre.x - foot.x, centre.y - foot.y};
    const Pair<Floats> ahead{Floats(stroke.current.x) - foot.x, Floats(stroke.current.y) - foot.y};
    const Floats distance = sqrt(outward.x * outward.x + outward.y * outward.y);
    const auto beside = between & (distance < Floats(stroke.radius));
    const Floats strength = Floats(0.1f) * distance;
    return {select(beside, velocity.x + strength * (outward.x + ahead.x), velocity.x),
            select(beside, velocity.y + strength * (outward.y + ahead.y), velocity.y)};
}

}  // namespace

void AddVelocity::evaluate(Float2 coord, float* out) const {
    const Cell cell = sampleNearest(velocity, coord.x * texelSize.x, coord.y * texelSize.y);
    const Float2 centre{coord.x * cellToScreen.x, coord.y * cellToScreen.y};
    storePair(out, pushedCell(*this, centre, pairAt(velocity, cell)));
}

void addVelocityKernel(const AddVelocity& pass) {
    if (pass.output.data == nullptr) {
        return;
    }
    const StrokeImpulse stroke = pass;
    const std::ptrdiff_t width = pass.output.width;
    for (std::ptrdiff_t j = 0; j < pass.output.height; ++j) {
        const float y = (static_cast<float>(j) + 0.5f) * stroke.cellToScreen.y;
        const float* const velocity = pass.velocity.data + j * width * 2;
        float* const out = pass.output.data + j * width * 2;
        forColumns(0, width, [=, &stroke]<class Floats>(std::ptrdiff_t i, Floats column) {
            const Floats x = (column + Floats(0.5f)) * Floats(stroke.cellToScreen.x);
            storePair(out + i * 2, pushedCell<Floats>(stroke, {x, Floats(y)},
                                                      loadPair<Floats>(velocity + i * 2)));
        });
    }
}

}  // namespace velmora
