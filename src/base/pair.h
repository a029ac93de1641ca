#pragma once

namespace velmora {

/// The x and y components of one or four cells.
template <class Floats>
struct Pair {
    Floats x;
    Floats y;
};

using Float2 = Pair<float>;

}  // namespace velmora
