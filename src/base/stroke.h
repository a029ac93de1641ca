#pragma once

#include <cmath>
#include <cstdint>

#include "base/pair.h"

namespace velmora {

/// Kind of touch. Selects the touch preset of a frame, the shape of its ink stroke and the behaviour of the solver
/// passes.
enum DragMode : std::int32_t { TapMode = -1, SlowDrag = 0, MediumDrag = 1, FastDrag = 2 };

/// Segment of a stroke in whole screen pixels, y down.
struct DragSegment {
    std::int32_t fromX, fromY, toX, toY;
};

/// Ink stroke of one frame: a segment in screen pixels, y down.
struct InkStroke {
    DragMode mode;
    Float2 previous;
    Float2 current;
};

/// Direction and length of a stroke.
struct StrokeLine {
    Float2 normal;  // unit vector
    float length;
};

/// Returns the line from `previous` to `current`. If the points are equal, the normal is (0, 0) and the length is 1.
/// Each point's distance along the line, dot(normal, point - previous), is then 0. A fast drag changes only points
/// whose distance along the line is greater than 0 and less than the length, so this stroke changes no point.
inline StrokeLine lineOf(Float2 previous, Float2 current) {
    const Float2 along{current.x - previous.x, current.y - previous.y};
    const float distance = std::sqrt(along.x * along.x + along.y * along.y);
    const float length = distance == 0.0f ? 1.0f : distance;
    return {{along.x / length, along.y / length}, length};
}

}  // namespace velmora
