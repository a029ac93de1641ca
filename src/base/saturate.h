#pragma once

#include <cstdint>
#include <limits>

namespace velmora {

// Conversions for touch coordinates and sizes. These numbers come from the host and may have any value.

/// Truncates the value towards zero and limits the result to the range of int. The value must not be NaN.
inline int saturatedInt(float value) {
    return value >= 2147483648.0f    ? std::numeric_limits<int>::max()
           : value <= -2147483648.0f ? std::numeric_limits<int>::min()
                                     : static_cast<int>(value);
}

inline int saturatedInt(std::int64_t value) {
    return value > std::numeric_limits<int>::max()   ? std::numeric_limits<int>::max()
           : value < std::numeric_limits<int>::min() ? std::numeric_limits<int>::min()
                                                     : static_cast<int>(value);
}

}  // namespace velmora
