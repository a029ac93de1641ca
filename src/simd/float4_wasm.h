#pragma once

#include <wasm_simd128.h>

#include "simd/lanes.h"

// Four-lane vectors for WebAssembly's 128-bit SIMD. WebAssembly has no mode that flushes subnormals to zero.

namespace velmora::wasm {

struct Int4 {
    v128_t lanes;
};

struct Mask4 {
    v128_t lanes;
};

struct Float4 {
    v128_t lanes;

    Float4() = default;
    Float4(v128_t all) : lanes(all) {}
    Float4(float all) : lanes(wasm_f32x4_splat(all)) {}
    Float4(float a, float b, float c, float d) : lanes(wasm_f32x4_make(a, b, c, d)) {}
};

struct Short8 {
    v128_t lanes;

    Short8() = default;
    Short8(v128_t all) : lanes(all) {}
    explicit Short8(std::uint16_t all) : lanes(wasm_u16x8_splat(all)) {}
};

inline Short8 loadShorts(const std::uint16_t* from) {
    return wasm_v128_load(from);
}
inline void store(std::uint16_t* to, Short8 value) {
    wasm_v128_store(to, value.lanes);
}
inline Short8 operator+(Short8 a, Short8 b) {
    return wasm_i16x8_add(a.lanes, b.lanes);
}

inline Float4 load(const float* from) {
    return wasm_v128_load(from);
}
inline Float4 loadAligned(const float* from) {
    return load(from);
}
inline void store(float* to, Float4 value) {
    wasm_v128_store(to, value.lanes);
}

inline void store(std::int32_t* to, Int4 value) {
    wasm_v128_store(to, value.lanes);
}

inline Pair<Float4> loadPair(const float* from) {
    const v128_t first = wasm_v128_load(from);
    const v128_t second = wasm_v128_load(from + 4);
    return {wasm_i32x4_shuffle(first, second, 0, 2, 4, 6),
            wasm_i32x4_shuffle(first, second, 1, 3, 5, 7)};
}
inline void storePair(float* to, Pair<Float4> cells) {
    wasm_v128_store(to, wasm_i32x4_shuffle(cells.x.lanes, cells.y.lanes, 0, 4, 1, 5));
    wasm_v128_store(to + 4, wasm_i32x4_shuffle(cells.x.lanes, cells.y.lanes, 2, 6, 3, 7));
}
inline void storeDifference(float* to, const float* from, Pair<Float4> change) {
    const v128_t first = wasm_i32x4_shuffle(change.x.lanes, change.y.lanes, 0, 4, 1, 5);
    const v128_t second = wasm_i32x4_shuffle(change.x.lanes, change.y.lanes, 2, 6, 3, 7);
    wasm_v128_store(to, wasm_f32x4_sub(wasm_v128_load(from), first));
    wasm_v128_store(to + 4, wasm_f32x4_sub(wasm_v128_load(from + 4), second));
}

inline Float4 slideRight(Float4 before, Float4 cells) {
    return wasm_i32x4_shuffle(before.lanes, cells.lanes, 3, 4, 5, 6);
}

inline Float4 slideLeft(Float4 cells, Float4 after) {
    return wasm_i32x4_shuffle(cells.lanes, after.lanes, 1, 2, 3, 4);
}

inline void transpose(Float4& a, Float4& b, Float4& c, Float4& d) {
    const v128_t ab01 = wasm_i32x4_shuffle(a.lanes, b.lanes, 0, 4, 1, 5);
    const v128_t ab23 = wasm_i32x4_shuffle(a.lanes, b.lanes, 2, 6, 3, 7);
    const v128_t cd01 = wasm_i32x4_shuffle(c.lanes, d.lanes, 0, 4, 1, 5);
    const v128_t cd23 = wasm_i32x4_shuffle(c.lanes, d.lanes, 2, 6, 3, 7);
    a = wasm_i32x4_shuffle(ab01, cd01, 0, 1, 4, 5);
    b = wasm_i32x4_shuffle(ab01, cd01, 2, 3, 6, 7);
    c = wasm_i32x4_shuffle(ab23, cd23, 0, 1, 4, 5);
    d = wasm_i32x4_shuffle(ab23, cd23, 2, 3, 6, 7);
}

inline Float4 operator+(Float4 a, Float4 b) {
    return wasm_f32x4_add(a.lanes, b.lanes);
}
inline Float4 operator-(Float4 a, Float4 b) {
    return wasm_f32x4_sub(a.lanes, b.lanes);
}
inline Float4 operator*(Float4 a, Float4 b) {
    return wasm_f32x4_mul(a.lanes, b.lanes);
}
// f32x4.pmin(a, b) is b < a ? b : a, and f32x4.pmax(a, b) is a < b ? b : a. min and max of simd/lanes.h need the
// operands in reverse order.
inline Float4 min(Float4 a, Float4 b) {
    return wasm_f32x4_pmin(b.lanes, a.lanes);
}
inline Float4 max(Float4 a, Float4 b) {
    return wasm_f32x4_pmax(b.lanes, a.lanes);
}
inline Float4 sqrt(Float4 a) {
    return wasm_f32x4_sqrt(a.lanes);
}

inline Float4 ramp(float start) {
    return Float4(start) + Float4(0.0f, 1.0f, 2.0f, 3.0f);
}

inline Mask4 operator<(Float4 a, Float4 b) {
    return {wasm_f32x4_lt(a.lanes, b.lanes)};
}
inline Mask4 operator>(Float4 a, Float4 b) {
    return b < a;
}
inline Mask4 operator|(Mask4 a, Mask4 b) {
    return {wasm_v128_or(a.lanes, b.lanes)};
}
inline Mask4 operator&(Mask4 a, Mask4 b) {
    return {wasm_v128_and(a.lanes, b.lanes)};
}
inline Int4 minusOneWhere(Mask4 which, Int4 value) {
    return {wasm_v128_or(which.lanes, value.lanes)};
}
inline bool any(Mask4 a) {
    return wasm_v128_any_true(a.lanes);
}
inline Float4 select(Mask4 which, Float4 yes, Float4 no) {
    return wasm_v128_bitselect(yes.lanes, no.lanes, which.lanes);
}

inline Int4 truncate(Float4 a) {
    // truncate must return INT32_MIN for a value that does not fit (simd/lanes.h). i32x4.trunc_sat returns other
    // numbers for NaN and large values, so replace them.
    const v128_t fits = wasm_f32x4_lt(a.lanes, wasm_f32x4_const_splat(2147483648.0f));
    const v128_t none = wasm_i32x4_const_splat(std::numeric_limits<std::int32_t>::min());
    return {wasm_v128_bitselect(wasm_i32x4_trunc_sat_f32x4(a.lanes), none, fits)};
}
inline Int4 truncateSmall(Float4 a) {
    // For a small whole number n, the low 23 bits of the float 2^23 + n are n. Adding and masking is faster than
    // i32x4.trunc_sat, which needs many instructions on x86.
    const v128_t sum = wasm_f32x4_add(wasm_f32x4_trunc(a.lanes), wasm_f32x4_const_splat(0x1p23f));
    return {wasm_v128_and(sum, wasm_i32x4_const_splat(0x7fffff))};
}
inline Float4 toFloat(Int4 a) {
    return wasm_f32x4_convert_i32x4(a.lanes);
}

inline Pair<Float4> gatherPairs(const float* cells, Int4 index) {
    const auto both = [&](std::int32_t a, std::int32_t b) {
        return wasm_v128_load64_lane(cells + std::ptrdiff_t{b} * 2,
                                     wasm_v128_load64_zero(cells + std::ptrdiff_t{a} * 2), 1);
    };
    const v128_t first =
        both(wasm_i32x4_extract_lane(index.lanes, 0), wasm_i32x4_extract_lane(index.lanes, 1));
    const v128_t second =
        both(wasm_i32x4_extract_lane(index.lanes, 2), wasm_i32x4_extract_lane(index.lanes, 3));
    return {wasm_i32x4_shuffle(first, second, 0, 2, 4, 6),
            wasm_i32x4_shuffle(first, second, 1, 3, 5, 7)};
}

inline Neighbours<Float4> gatherNeighbours(const float* cells, const std::int32_t* index) {
    const auto both = [&](std::int32_t at) {
        return wasm_v128_load(cells + std::ptrdiff_t{at} * 2);
    };
    const v128_t lane0 = both(index[0]);
    const v128_t lane1 = both(index[1]);
    const v128_t lane2 = both(index[2]);
    const v128_t lane3 = both(index[3]);
    const v128_t cell01 = wasm_i32x4_shuffle(lane0, lane1, 0, 4, 1, 5);  // x0 x1 y0 y1
    const v128_t cell23 = wasm_i32x4_shuffle(lane2, lane3, 0, 4, 1, 5);
    const v128_t next01 = wasm_i32x4_shuffle(lane0, lane1, 2, 6, 3, 7);
    const v128_t next23 = wasm_i32x4_shuffle(lane2, lane3, 2, 6, 3, 7);
    return {{wasm_i64x2_shuffle(cell01, cell23, 0, 2), wasm_i64x2_shuffle(cell01, cell23, 1, 3)},
            {wasm_i64x2_shuffle(next01, next23, 0, 2), wasm_i64x2_shuffle(next01, next23, 1, 3)}};
}

inline void storeBytePairs(std::uint8_t* to, BytePairs<Int4> first, BytePairs<Int4> second) {
    const v128_t high = wasm_i16x8_narrow_i32x4(first.high.lanes, second.high.lanes);
    const v128_t low = wasm_i16x8_narrow_i32x4(first.low.lanes, second.low.lanes);
    wasm_v128_store(to, wasm_v128_or(high, wasm_i16x8_shl(low, 8)));
}

}  // namespace velmora::wasm
