#pragma once

#include <emmintrin.h>

#include <cstddef>
#include <cstdint>

#include "simd/lanes.h"

// Four-lane vectors for SSE2, which all 64-bit x86 processors have.

namespace velmora::sse2 {

struct Int4 {
    __m128i lanes;
};

struct Mask4 {
    __m128 lanes;
};

struct Float4 {
    __m128 lanes;

    Float4() = default;
    Float4(__m128 all) : lanes(all) {}
    Float4(float all) : lanes(_mm_set1_ps(all)) {}
    Float4(float a, float b, float c, float d) : lanes(_mm_setr_ps(a, b, c, d)) {}
};

struct Short8 {
    __m128i lanes;

    Short8() = default;
    Short8(__m128i all) : lanes(all) {}
    explicit Short8(std::uint16_t all) : lanes(_mm_set1_epi16(static_cast<std::int16_t>(all))) {}
};

inline Short8 loadShorts(const std::uint16_t* from) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}
inline void store(std::uint16_t* to, Short8 value) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), value.lanes);
}
inline Short8 operator+(Short8 a, Short8 b) {
    return _mm_add_epi16(a.lanes, b.lanes);
}

inline Float4 load(const float* from) {
    return _mm_loadu_ps(from);
}
inline Float4 loadAligned(const float* from) {
    return _mm_load_ps(from);
}
inline void store(float* to, Float4 value) {
    _mm_storeu_ps(to, value.lanes);
}

inline void store(std::int32_t* to, Int4 value) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), value.lanes);
}

inline Pair<Float4> loadPair(const float* from) {
    const __m128 first = _mm_loadu_ps(from);
    const __m128 second = _mm_loadu_ps(from + 4);
    return {_mm_shuffle_ps(first, second, _MM_SHUFFLE(2, 0, 2, 0)),
            _mm_shuffle_ps(first, second, _MM_SHUFFLE(3, 1, 3, 1))};
}
inline void storePair(float* to, Pair<Float4> cells) {
    _mm_storeu_ps(to, _mm_unpacklo_ps(cells.x.lanes, cells.y.lanes));
    _mm_storeu_ps(to + 4, _mm_unpackhi_ps(cells.x.lanes, cells.y.lanes));
}
inline void storeDifference(float* to, const float* from, Pair<Float4> change) {
    const __m128 first = _mm_unpacklo_ps(change.x.lanes, change.y.lanes);
    const __m128 second = _mm_unpackhi_ps(change.x.lanes, change.y.lanes);
    _mm_storeu_ps(to, _mm_sub_ps(_mm_loadu_ps(from), first));
    _mm_storeu_ps(to + 4, _mm_sub_ps(_mm_loadu_ps(from + 4), second));
}

inline Float4 slideRight(Float4 before, Float4 cells) {
    const __m128 edge = _mm_shuffle_ps(before.lanes, cells.lanes, _MM_SHUFFLE(0, 0, 3, 3));
    return _mm_shuffle_ps(edge, cells.lanes, _MM_SHUFFLE(2, 1, 2, 0));
}

inline Float4 slideLeft(Float4 cells, Float4 after) {
    const __m128 edge = _mm_shuffle_ps(cells.lanes, after.lanes, _MM_SHUFFLE(0, 0, 3, 3));
    return _mm_shuffle_ps(cells.lanes, edge, _MM_SHUFFLE(2, 0, 2, 1));
}

inline void transpose(Float4& a, Float4& b, Float4& c, Float4& d) {
    _MM_TRANSPOSE4_PS(a.lanes, b.lanes, c.lanes, d.lanes);
}

inline Float4 operator+(Float4 a, Float4 b) {
    return _mm_add_ps(a.lanes, b.lanes);
}
inline Float4 operator-(Float4 a, Float4 b) {
    return _mm_sub_ps(a.lanes, b.lanes);
}
inline Float4 operator*(Float4 a, Float4 b) {
    return _mm_mul_ps(a.lanes, b.lanes);
}
// If an operand is NaN or both are zero, minps and maxps return their second operand, as simd/lanes.h requires.
inline Float4 min(Float4 a, Float4 b) {
    return _mm_min_ps(a.lanes, b.lanes);
}
inline Float4 max(Float4 a, Float4 b) {
    return _mm_max_ps(a.lanes, b.lanes);
}
inline Float4 sqrt(Float4 a) {
    return _mm_sqrt_ps(a.lanes);
}

inline Float4 ramp(float start) {
    return Float4(start) + Float4(0.0f, 1.0f, 2.0f, 3.0f);
}

inline Mask4 operator<(Float4 a, Float4 b) {
    return {_mm_cmplt_ps(a.lanes, b.lanes)};
}
inline Mask4 operator>(Float4 a, Float4 b) {
    return b < a;
}
inline Mask4 operator|(Mask4 a, Mask4 b) {
    return {_mm_or_ps(a.lanes, b.lanes)};
}
inline Mask4 operator&(Mask4 a, Mask4 b) {
    return {_mm_and_ps(a.lanes, b.lanes)};
}
inline Int4 minusOneWhere(Mask4 which, Int4 value) {
    return {_mm_or_si128(_mm_castps_si128(which.lanes), value.lanes)};
}
inline bool any(Mask4 a) {
    return _mm_movemask_ps(a.lanes) != 0;
}
inline Float4 select(Mask4 which, Float4 yes, Float4 no) {
    return _mm_or_ps(_mm_and_ps(which.lanes, yes.lanes), _mm_andnot_ps(which.lanes, no.lanes));
}

inline Int4 truncate(Float4 a) {
    return {_mm_cvttps_epi32(a.lanes)};
}
inline Int4 truncateSmall(Float4 a) {
    return truncate(a);
}
inline Float4 toFloat(Int4 a) {
    return _mm_cvtepi32_ps(a.lanes);
}

/// Addresses of four cells with two floats each. The constructor extracts two 32-bit indices as one 64-bit number and
/// then splits that number. Indices are never negative, so they need no sign extension.
struct CellAddresses {
    CellAddresses(const float* cells, Int4 index) {
        const auto low = static_cast<std::uint64_t>(_mm_cvtsi128_si64(index.lanes));
        const auto high = static_cast<std::uint64_t>(
            _mm_cvtsi128_si64(_mm_unpackhi_epi64(index.lanes, index.lanes)));
        at[0] = cells + std::uint64_t{static_cast<std::uint32_t>(low)} * 2;
        at[1] = cells + (low >> 32) * 2;
        at[2] = cells + std::uint64_t{static_cast<std::uint32_t>(high)} * 2;
        at[3] = cells + (high >> 32) * 2;
    }

    const float* at[4];
};

inline Pair<Float4> gatherPairs(const float* cells, Int4 index) {
    const CellAddresses cell(cells, index);
    const auto both = [](const float* a, const float* b) {
        const __m128 low = _mm_loadl_pi(_mm_setzero_ps(), reinterpret_cast<const __m64*>(a));
        return _mm_loadh_pi(low, reinterpret_cast<const __m64*>(b));
    };
    const __m128 first = both(cell.at[0], cell.at[1]);
    const __m128 second = both(cell.at[2], cell.at[3]);
    return {_mm_shuffle_ps(first, second, _MM_SHUFFLE(2, 0, 2, 0)),
            _mm_shuffle_ps(first, second, _MM_SHUFFLE(3, 1, 3, 1))};
}

inline Neighbours<Float4> gatherNeighbours(const float* cells, const std::int32_t* index) {
    const auto both = [=](std::int32_t at) { return _mm_loadu_ps(cells + std::ptrdiff_t{at} * 2); };
    __m128 cellX = both(index[0]);
    __m128 cellY = both(index[1]);
    __m128 nextX = both(index[2]);
    __m128 nextY = both(index[3]);
    _MM_TRANSPOSE4_PS(cellX, cellY, nextX, nextY);
    return {{cellX, cellY}, {nextX, nextY}};
}

inline void storeBytePairs(std::uint8_t* to, BytePairs<Int4> first, BytePairs<Int4> second) {
    const __m128i high = _mm_packs_epi32(first.high.lanes, second.high.lanes);
    const __m128i low = _mm_packs_epi32(first.low.lanes, second.low.lanes);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_or_si128(high, _mm_slli_epi16(low, 8)));
}

}  // namespace velmora::sse2
