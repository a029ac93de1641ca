#include <cmath>

#include "solver/passes.h"
#include "solver/sampling.h"

namespace velmora {

void AdvectDensity::evaluate(Float2 coord, float* out) const {
    constexpr float stillRadiusSquared = 6400.0f;  // (80 screen pixels)^2
    const Float2 at{coord.x * texelSize.x, coord.y * texelSize.y};
    const Float2 v = sampleBilinear<float>(BilinearGrid(velocity), at.x, at.y);
    const Float2 offset{center.x - coord.x * scale.x, center.y - coord.y * scale.y};
    const float distanceSquared = offset.x * offset.x + offset.y * offset.y;
    const bool still = drag < FastDrag && distanceSquared < stillRadiusSquared;
    const float step = (still ? 0.0075f * std::sqrt(distanceSquared) : backStep) * timeStep;
    out[0] = dissipation * sampleBilinearScalar(source, (coord.x - step * v.x) * texelSize.x,
                                                (coord.y - step * v.y) * texelSize.y);
}

}  // namespace velmora
