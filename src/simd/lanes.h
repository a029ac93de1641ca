#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

#include "base/pair.h"

// The operations that kernels use. The same expression compiles for one cell (`float`) and for four adjacent cells
// (`Float4`, simd/float4.h). For each cell, the results of both types are bit-identical. This file has the operations
// for one cell. The four-lane operations must follow these definitions:
//
//   min(a, b)   a < b ? a : b, so b if either is NaN
//   max(a, b)   a > b ? a : b, so b if either is NaN
//   truncate    rounds towards zero; INT32_MIN if the value is NaN or does not fit
//   sqrt        is correctly rounded
//   arithmetic  is IEEE single precision: each operation rounds once, and multiply-add is never fused
//
// Subnormals are an exception: a processor or a mode may flush them to zero (see simd/flush_subnormals.h).

namespace velmora {

template <class Floats>
struct FloatsTraits;

template <>
struct FloatsTraits<float> {
    static constexpr std::ptrdiff_t width = 1;
    using Int = std::int32_t;
};

template <class Floats>
using IntOf = typename FloatsTraits<Floats>::Int;

template <class Floats>
Floats load(const float* from) = delete;
template <>
inline float load<float>(const float* from) {
    return *from;
}
inline void store(float* to, float value) {
    *to = value;
}
inline void store(std::int32_t* to, std::int32_t value) {
    *to = value;
}

template <class Floats>
Pair<Floats> loadPair(const float* from) = delete;
template <>
inline Pair<float> loadPair<float>(const float* from) {
    return {from[0], from[1]};
}
inline void storePair(float* to, Pair<float> cells) {
    to[0] = cells.x;
    to[1] = cells.y;
}
/// Subtracts `change` from the pairs at `from` and stores the result at `to`. Some processors can subtract
/// without separating the interleaved x and y, which saves shuffles.
inline void storeDifference(float* to, const float* from, Pair<float> change) {
    to[0] = from[0] - change.x;
    to[1] = from[1] - change.y;
}

/// Returns start, start + 1, start + 2 and so on, one value per lane. The values are exact for whole numbers below
/// 2^24.
template <class Floats>
Floats ramp(float start) = delete;
template <>
inline float ramp<float>(float start) {
    return start;
}

/// Moves the lanes right by one: returns the last lane of `before`, then all lanes of `cells` except the last. If
/// `before` is the group before `cells`, the result holds the left neighbours of `cells`.
inline float slideRight(float before, float /*cells*/) {
    return before;
}

/// Moves the lanes left by one: returns all lanes of `cells` except the first, then the first lane of `after`. If
/// `after` is the group after `cells`, the result holds the right neighbours of `cells`.
inline float slideLeft(float /*cells*/, float after) {
    return after;
}

/// Returns the bits of a float. std::bit_cast would do the same, but some C++ standard libraries still lack it.
inline std::uint32_t bitsOf(float value) {
    std::uint32_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

inline float min(float a, float b) {
    return a < b ? a : b;
}
inline float max(float a, float b) {
    return a > b ? a : b;
}
inline float select(bool which, float yes, float no) {
    return which ? yes : no;
}
/// Returns -1 if `which` is true, else `value`.
inline std::int32_t minusOneWhere(bool which, std::int32_t value) {
    return which ? -1 : value;
}
inline bool any(bool which) {
    return which;
}
inline float sqrt(float value) {
    return std::sqrt(value);
}

inline std::int32_t truncate(float value) {
    const bool fits = value >= -2147483648.0f && value < 2147483648.0f;
    return fits ? static_cast<std::int32_t>(value) : std::numeric_limits<std::int32_t>::min();
}
/// Works like truncate, but only for values in [0, 2^22]. Some processors need fewer instructions for this range.
inline std::int32_t truncateSmall(float value) {
    return static_cast<std::int32_t>(value);
}
inline float toFloat(std::int32_t value) {
    return static_cast<float>(value);
}

/// Returns the cells at the given indices, one cell per lane. A cell has 2 floats.
inline Pair<float> gatherPairs(const float* cells, std::int32_t index) {
    return loadPair<float>(cells + std::ptrdiff_t{index} * 2);
}

/// One cell or four cells, and for each the cell after it.
template <class Floats>
struct Neighbours {
    Pair<Floats> cell;
    Pair<Floats> next;
};

/// Returns the cells at `index[0]`, `index[1]` and so on, one per lane, each with the cell after it. A cell has 2
/// floats. The cells after them must exist.
template <class Floats>
Neighbours<Floats> gatherNeighbours(const float* cells, const std::int32_t* index) = delete;
template <>
inline Neighbours<float> gatherNeighbours<float>(const float* cells, const std::int32_t* index) {
    return {gatherPairs(cells, *index), gatherPairs(cells, *index + 1)};
}

/// High and low byte of one value or of four values. Each byte is in [0, 255].
template <class Int>
struct BytePairs {
    Int high;
    Int low;
};

/// Stores the pairs of `first`, then the pairs of `second`, as bytes in the order high, low, high, low, ...
inline void storeBytePairs(std::uint8_t* to, BytePairs<std::int32_t> first,
                           BytePairs<std::int32_t> second) {
    to[0] = static_cast<std::uint8_t>(first.high);
    to[1] = static_cast<std::uint8_t>(first.low);
    to[2] = static_cast<std::uint8_t>(second.high);
    to[3] = static_cast<std::uint8_t>(second.low);
}

}  // namespace velmora
