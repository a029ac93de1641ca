#pragma once

#include <cstddef>
#include <cstdint>

#include "simd/float4_plain.h"

// Namespace `lanes` holds the four-lane vectors for the target processor. If VELMORA_PLAIN_LANES is defined, these are
// plain structs.
#if defined(VELMORA_PLAIN_LANES)
namespace velmora {
namespace lanes = plain;
}
#elif defined(__SSE2__) && defined(__x86_64__)
#include "simd/float4_sse2.h"
namespace velmora {
namespace lanes = sse2;
}
#elif defined(__ARM_NEON)
#include "simd/float4_neon.h"
namespace velmora {
namespace lanes = neon;
}
#elif defined(__wasm_simd128__)
#include "simd/float4_wasm.h"
namespace velmora {
namespace lanes = wasm;
}
#else
namespace velmora {
namespace lanes = plain;
}
#endif

namespace velmora {

using lanes::Float4;
/// Loads four floats from an address that is a multiple of 16 bytes. On x86, an arithmetic instruction can take an
/// aligned vector directly from memory, but an unaligned vector needs a separate load instruction.
using lanes::loadAligned;
using lanes::loadShorts;
using lanes::Short8;

/// Returns the first address at or after `from` that is a multiple of 16 bytes. That address is at most 3 floats after
/// `from`.
inline float* alignedUp(float* from) {
    const auto beyond = reinterpret_cast<std::uintptr_t>(from) % 16;
    return from + (16 - beyond) % 16 / sizeof(float);
}

template <>
struct FloatsTraits<Float4> {
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
inline Neighbours<Float4> gatherNeighbours<Float4>(const float* cells, const std::int32_t* index) {
    return lanes::gatherNeighbours(cells, index);
}
template <>
inline Float4 ramp<Float4>(float start) {
    return lanes::ramp(start);
}

/// Runs `cell.operator()<Floats>(i)` over the columns [begin, end): four columns at a time, then the remaining columns
/// singly. The lambda should capture by value. For a captured reference, the compiler must assume that every vector
/// store changes the referenced value, so it reads the value again for every group.
template <class Cell>
void forGroups(std::ptrdiff_t begin, std::ptrdiff_t end, Cell cell) {
    std::ptrdiff_t i = begin;
    for (; i + 4 <= end; i += 4) {
        cell.template operator()<Float4>(i);
    }
    // At most three columns are left. The explicit bound of three keeps compilers from vectorising this loop.
    for (int k = 0; k < 3 && i < end; ++k, ++i) {
        cell.template operator()<float>(i);
    }
}

/// Calls `block(i)` for blocks of four elements, i to i + 3. Together the blocks cover all `count` elements. `count`
/// must be at least four. The last block may overlap the block before it.
template <class Block>
void forBlocksOfFour(std::ptrdiff_t count, Block block) {
    for (std::ptrdiff_t i = 0; i < count - 4; i += 4) {
        block(i);
    }
    block(count - 4);
}

/// Like forGroups, but also passes the column numbers of the lanes as floats: `cell.operator()<Floats>(i, columns)`.
template <class Cell>
void forColumns(std::ptrdiff_t begin, std::ptrdiff_t end, Cell cell) {
    Float4 columns = ramp<Float4>(static_cast<float>(begin));
    forGroups(begin, end, [&]<class Floats>(std::ptrdiff_t i) {
        if constexpr (FloatsTraits<Floats>::width == 4) {
            cell.template operator()<Float4>(i, columns);
            columns = columns + Float4(4.0f);
        } else {
            cell.template operator()<float>(i, static_cast<float>(i));
        }
    });
}

}  // namespace velmora
