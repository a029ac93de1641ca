#pragma once

#include "simd/float4_plain.h"

// The four lanes of this build, chosen by the compiler's own macros. VELMORA_PLAIN_LANES forces the
// plain struct.
#if defined(VELMORA_PLAIN_LANES)
namespace velmora {
namespace lanes = plain;
}
#elif defined(__SSE2__)
#include "simd/float4_sse2.h"
namespace velmora {
namespace lanes = sse2;
}
#elif defined(__ARM_NEON)
#include "simd/float4_neon.h"
namespace velmora {
namespace lanes = neon;
}
#else
namespace velmora {
namespace lanes = plain;
}
#endif

namespace velmora {

using lanes::Float4;

template <>
struct LaneTraits<Float4> {
    static constexpr std::ptrdiff_t width = 4;
    using Int = lanes::Int4;
};

template <>
inline Float4 load<Float4>(const float* from) {
    return lanes::load(from);
}
template <>
inline Pair<Float4> loadPair<Float4>(const float* from) {
    return lanes::loadPair(from);
}
template <>
inline Float4 ramp<Float4>(float start) {
    return lanes::ramp(start);
}

/// Runs `cell.operator()<Lane>(i)` over the columns [begin, end): four at a time, then the rest one
/// at a time.
template <class Cell>
void forLanes(std::ptrdiff_t begin, std::ptrdiff_t end, Cell cell) {
    std::ptrdiff_t i = begin;
    for (; i + 4 <= end; i += 4) {
        cell.template operator()<Float4>(i);
    }
    for (; i < end; ++i) {
        cell.template operator()<float>(i);
    }
}

}  // namespace velmora
