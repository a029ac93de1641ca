#pragma once

#include <cstdint>
#include <limits>

namespace velmora {

/// The nearest int to a whole-numbered float that is no NaN. Touches and sizes come from outside
/// and may be anything.
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
