#pragma once

namespace velmora {

/// The x and y components of one cell or of four cells.
template <class Floats>
struct Pair {
    Floats x;
    Floats y;
};

using Float2 = Pair<float>;

}  // namespace velmora
