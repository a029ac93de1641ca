#include "paintings/field.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace paintings {
namespace {

int samplesIn(float length, float distance) {
    return static_cast<int>(std::ceil(length / distance)) + 1;
}

}  // namespace

Field::Field(const View& view, float sampleDistance, float margin)
    : distance(sampleDistance),
      columnsLeft(samplesIn(view.halfWidth() + margin, distance)),
      rowsAbove(samplesIn(view.halfHeight() + margin, distance)),
      columns(2 * columnsLeft + 1),
      rows(2 * rowsAbove + 1),
      start{-distance * static_cast<float>(columnsLeft), -distance * static_cast<float>(rowsAbove)},
      values(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows)) {}

float Field::at(Vec2 position) const {
    const float x = std::max(0.0f, samplesTo(position.x));
    const float y = std::max(0.0f, (position.y - start.y) / distance);
    const int column = std::min(static_cast<int>(x), columns - 2);
    const int row = std::min(static_cast<int>(y), rows - 2);
    const float* const corner = values.data() + std::ptrdiff_t{row} * columns + column;
    const float right = x - static_cast<float>(column);
    return mix(mix(corner[0], corner[1], right), mix(corner[columns], corner[columns + 1], right),
               y - static_cast<float>(row));
}

std::vector<float> Field::rowAt(float y) const {
    const float place = std::max(0.0f, (y - start.y) / distance);
    const int row = std::min(static_cast<int>(place), rows - 2);
    const float* const above = values.data() + std::ptrdiff_t{row} * columns;
    std::vector<float> result(static_cast<std::size_t>(columns));
    std::transform(
        above, above + columns, above + columns, result.begin(),
        [&](float high, float low) { return mix(high, low, place - static_cast<float>(row)); });
    return result;
}

}  // namespace paintings
