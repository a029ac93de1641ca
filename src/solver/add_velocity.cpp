#include "solver/passes.h"
#include "solver/sampling.h"

namespace velmora {

namespace {

/// `velocity` of the cell whose centre is `centre`, screen pixels, pushed where it lies beside the
/// segment. The distance is exact on every processor: an estimate would do for four lanes at once,
/// but would give each other bits.
template <class Lane>
Pair<Lane> pushedCell(const AddVelocity& pass, Pair<Lane> centre, Pair<Lane> velocity) {
    const Lane t = (centre.x - Lane(pass.previous.x)) * Lane(pass.normal.x) +
                   (centre.y - Lane(pass.previous.y)) * Lane(pass.normal.y);
    const Pair<Lane> foot{Lane(pass.previous.x) + t * Lane(pass.normal.x),
                          Lane(pass.previous.y) + t * Lane(pass.normal.y)};
    const Pair<Lane> outward{centre.x - foot.x, centre.y - foot.y};
    const Lane distance = sqrt(outward.x * outward.x + outward.y * outward.y);
    const auto beside = (t > Lane(0.0f)) & (t < Lane(pass.length)) & (distance < Lane(pass.radius));
    const Lane strength = Lane(0.1f) * distance;
    return {select(beside, velocity.x + strength * (outward.x + (Lane(pass.current.x) - foot.x)),
                   velocity.x),
            select(beside, velocity.y + strength * (outward.y + (Lane(pass.current.y) - foot.y)),
                   velocity.y)};
}

}  // namespace

void AddVelocity::evaluate(Float2 coord, float* out) const {
    const Cell cell = sampleNearest(velocity, coord.x * texelSize.x, coord.y * texelSize.y);
    const Float2 centre{coord.x * cellToScreen.x, coord.y * cellToScreen.y};
    storePair(out, pushedCell(*this, centre, pairAt(velocity, cell)));
}

void runAddVelocity(const AddVelocity& pass) {
    const FloatGrid& output = pass.output;
    if (output.data == nullptr) {
        return;
    }
    for (std::int32_t j = 0; j < output.height; ++j) {
        const float y = (static_cast<float>(j) + 0.5f) * pass.cellToScreen.y;
        const std::ptrdiff_t row = std::ptrdiff_t{j} * output.width * 2;
        forLanes(0, output.width, [&]<class Lane>(std::ptrdiff_t i) {
            const Lane x = ramp<Lane>(static_cast<float>(i) + 0.5f) * Lane(pass.cellToScreen.x);
            storePair(output.data + row + i * 2,
                      pushedCell<Lane>(pass, {x, Lane(y)},
                                       loadPair<Lane>(pass.velocity.data + row + i * 2)));
        });
    }
}

}  // namespace velmora
