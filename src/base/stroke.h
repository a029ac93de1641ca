#pragma once

#include <cmath>
#include <cstdint>

#include "base/pair.h"

namespace velmora {

/// What a touch does to flow and ink: the mode of a frame, of its stroke and of the passes, and the
/// speed class of a drag.
enum DragMode : std::int32_t { TapMode = -1, SlowDrag = 0, MediumDrag = 1, FastDrag = 2 };

/// A stroke's segment in whole screen pixels, y down.
struct DragSegment {
    std::int32_t fromX, fromY, toX, toY;
};

/// Ink of one frame: a segment in screen pixels, y down.
struct InkStroke {
    DragMode mode;
    Float2 previous;
    Float2 current;
};

/// Where a stroke leads, and how far.
struct StrokeLine {
    Float2 normal;  // unit vector
    float length;
};

/// One of no length has the vector (0, 0) and length 1: no point lies along it.
inline StrokeLine lineOf(Float2 previous, Float2 current) {
    const Float2 along{current.x - previous.x, current.y - previous.y};
    const float distance = std::sqrt(along.x * along.x + along.y * along.y);
    const float length = distance == 0.0f ? 1.0f : distance;
    return {{along.x / length, along.y / length}, length};
}

}  // namespace velmora
