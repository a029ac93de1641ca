#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

#include "base/pair.h"

// The vocabulary that kernels are written in: the same expression compiles for one cell (`float`)
// and for four neighbouring cells (`Float4`, simd/float4.h), and gives each cell the same bits in
// both. This file holds the one-cell half, which also defines what the four-lane operations mean:
//
//   min(a, b)   a < b ? a : b, so b where either is NaN; max(a, b) likewise with a > b
//   truncate    towards zero; INT32_MIN where the value does not fit or is NaN
//   sqrt        correctly rounded
//   arithmetic  IEEE single precision, one rounding an operation, multiply-add never fused
//
// Subnormals are exempt: a processor or a mode may flush them to zero (see simd/flush_subnormals.h).

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
/// Stores the pairs at `from` less `change`. Some processors need not take the pairs apart for it.
inline void storeDifference(float* to, const float* from, Pair<float> change) {
    to[0] = from[0] - change.x;
    to[1] = from[1] - change.y;
}

/// start, start + 1, ... one value a lane: exact for whole numbers below 2^24.
template <class Floats>
Floats ramp(float start) = delete;
template <>
inline float ramp<float>(float start) {
    return start;
}

/// The lanes one cell to the left of `cells`: the last of `before`, which lies left of them, then
/// all but the last of `cells`.
inline float shiftIn(float before, float /*cells*/) {
    return before;
}

/// The lanes one cell to the right of `cells`: all but the first of them, then the first of `after`,
/// which lies right of them.
inline float shiftOut(float /*cells*/, float after) {
    return after;
}

/// As std::bit_cast would give them, which not every C++ library has yet.
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
/// -1 where the mask holds, else the value.
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
/// truncate of values in [0, 2^22], for which some processors need not look at the others.
inline std::int32_t truncateSmall(float value) {
    return static_cast<std::int32_t>(value);
}
inline float toFloat(std::int32_t value) {
    return static_cast<float>(value);
}

/// The 2-float cells with these indices.
inline Pair<float> gatherPairs(const float* cells, std::int32_t index) {
    return loadPair<float>(cells + std::ptrdiff_t{index} * 2);
}

/// One or four cells and those after them.
template <class Floats>
struct Neighbours {
    Pair<Floats> cell;
    Pair<Floats> next;
};

/// The 2-float cells with the indices at `index`, one a lane, and the cells after them, which must
/// exist.
template <class Floats>
Neighbours<Floats> gatherNeighbours(const float* cells, const std::int32_t* index) = delete;
template <>
inline Neighbours<float> gatherNeighbours<float>(const float* cells, const std::int32_t* index) {
    return {gatherPairs(cells, *index), gatherPairs(cells, *index + 1)};
}

/// High and low byte of one or four values, each in [0, 255].
template <class Int>
struct BytePairs {
    Int high;
    Int low;
};

/// Stores the pairs of `first`, then those of `second`, as alternating bytes: high, low, high, low ...
inline void storeBytePairs(std::uint8_t* to, BytePairs<std::int32_t> first,
                           BytePairs<std::int32_t> second) {
    to[0] = static_cast<std::uint8_t>(first.high);
    to[1] = static_cast<std::uint8_t>(first.low);
    to[2] = static_cast<std::uint8_t>(second.high);
    to[3] = static_cast<std::uint8_t>(second.low);
}

}  // namespace velmora
