#pragma once

#include <cstdint>
#include <vector>

namespace hostkit {

/// 32-bit RGBA pixels, rows top to bottom without padding.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgba;

    bool empty() const { return rgba.empty(); }
};

/// The sheen of the water: a soft sky with caustic light, square, made by formula.
Picture makeSheen(int size = 256);

/// A board of squares, redder to the right and greener downwards: shows by eye and by pixel which way is up.
Picture makeTestPicture(int width, int height);

}  // namespace hostkit
