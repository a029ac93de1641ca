#include <cmath>

#include "solver/passes.h"
#include "solver/sampling.h"

namespace velmora {

namespace {

float strokeInk(const AddInk& pass, Float2 centre) {
    const float t =
        (centre.x - pass.previous.x) * pass.normal.x + (centre.y - pass.previous.y) * pass.normal.y;
    if (!(t > 0.0f && t < pass.len)) {
        return 0.0f;
    }
    const Float2 offset{pass.previous.x + t * pass.normal.x - centre.x,
                        pass.previous.y + t * pass.normal.y - centre.y};
    const float distanceSquared = offset.x * offset.x + offset.y * offset.y;
    const float radiusSquared = pass.radius * pass.radius;
    if (!(distanceSquared < radiusSquared)) {
        return 0.0f;
    }
    const double exponent =
        -static_cast<double>(distanceSquared) / (0.8 * static_cast<double>(radiusSquared));
    return static_cast<float>(static_cast<double>(pass.impulseDensity) * std::exp(exponent));
}

float blotInk(const AddInk& pass, Float2 centre) {
    const Float2 offset{pass.current.x - centre.x, pass.current.y - centre.y};
    const float distanceSquared = offset.x * offset.x + offset.y * offset.y;
    return distanceSquared < pass.radius * pass.radius
               ? pass.impulseDensity / (1.0f + std::sqrt(distanceSquared))
               : 0.0f;
}

}  // namespace

void AddInk::evaluate(Float2 coord, float* out) const {
    const Cell cell = sampleNearest(source, coord.x * texelSize.x, coord.y * texelSize.y);
    const Float2 centre{coord.x * cellToScreen.x, coord.y * cellToScreen.y};
    out[0] = scalarAt(source, cell) +
             (mode == FastDrag ? strokeInk(*this, centre) : blotInk(*this, centre));
}

}  // namespace velmora
