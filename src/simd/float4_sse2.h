#pragma once

#include <emmintrin.h>

#include "simd/lanes.h"

// Four lanes on SSE2, which every 64-bit x86 processor has.

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

inline Float4 load(const float* from) {
    return _mm_loadu_ps(from);
}
inline void store(float* to, Float4 value) {
    _mm_storeu_ps(to, value.lanes);
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

inline void storePoints(float* to, Float4 x, Float4 y) {
    const __m128 zero = _mm_setzero_ps();
    const __m128 xy01 = _mm_unpacklo_ps(x.lanes, y.lanes);                         // x0 y0 x1 y1
    const __m128 xy23 = _mm_unpackhi_ps(x.lanes, y.lanes);                         // x2 y2 x3 y3
    const __m128 x1y1 = _mm_movehl_ps(zero, xy01);                                 // x1 y1 0 0
    const __m128 x3y3 = _mm_movehl_ps(zero, xy23);                                 // x3 y3 0 0
    const __m128 zeroX1 = _mm_shuffle_ps(zero, x1y1, _MM_SHUFFLE(3, 0, 0, 0));     // 0 0 x1 0
    _mm_storeu_ps(to, _mm_shuffle_ps(xy01, zeroX1, _MM_SHUFFLE(2, 0, 1, 0)));      // x0 y0 0 x1
    const __m128 y1Zero = _mm_shuffle_ps(x1y1, zero, _MM_SHUFFLE(0, 0, 0, 1));     // y1 x1 0 0
    _mm_storeu_ps(to + 4, _mm_shuffle_ps(y1Zero, xy23, _MM_SHUFFLE(1, 0, 2, 0)));  // y1 0 x2 y2
    const __m128 zeroX3 = _mm_unpacklo_ps(zero, x3y3);                             // 0 x3 0 y3
    _mm_storeu_ps(to + 8, _mm_shuffle_ps(zeroX3, x3y3, _MM_SHUFFLE(2, 1, 1, 0)));  // 0 x3 y3 0
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
// minps and maxps give their second operand where either is NaN or both are zero.
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
inline bool any(Mask4 a) {
    return _mm_movemask_ps(a.lanes) != 0;
}
inline Float4 select(Mask4 which, Float4 yes, Float4 no) {
    return _mm_or_ps(_mm_and_ps(which.lanes, yes.lanes), _mm_andnot_ps(which.lanes, no.lanes));
}

inline Int4 truncate(Float4 a) {
    return {_mm_cvttps_epi32(a.lanes)};
}
inline Float4 toFloat(Int4 a) {
    return _mm_cvtepi32_ps(a.lanes);
}

inline Pair<Float4> gatherPairs(const float* cells, Int4 index) {
    alignas(16) std::int32_t at[4];
    _mm_store_si128(reinterpret_cast<__m128i*>(at), index.lanes);
    const auto cell = [&](int k) {
        return reinterpret_cast<const __m64*>(cells + std::ptrdiff_t{at[k]} * 2);
    };
    const __m128 first = _mm_loadh_pi(_mm_loadl_pi(_mm_setzero_ps(), cell(0)), cell(1));
    const __m128 second = _mm_loadh_pi(_mm_loadl_pi(_mm_setzero_ps(), cell(2)), cell(3));
    return {_mm_shuffle_ps(first, second, _MM_SHUFFLE(2, 0, 2, 0)),
            _mm_shuffle_ps(first, second, _MM_SHUFFLE(3, 1, 3, 1))};
}

inline void storeBytePairs(std::uint8_t* to, Int4 high, Int4 low) {
    // The pack saturates signed values: the shifts sign-extend the 16-bit pairs so that it passes
    // them whole.
    const __m128i pairs = _mm_or_si128(high.lanes, _mm_slli_epi32(low.lanes, 8));
    const __m128i extended = _mm_srai_epi32(_mm_slli_epi32(pairs, 16), 16);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(to), _mm_packs_epi32(extended, extended));
}

}  // namespace velmora::sse2
