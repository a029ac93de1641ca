#pragma once

#include <arm_neon.h>

#include "simd/lanes.h"

// Four-lane vectors for ARM Advanced SIMD (NEON), 64-bit and 32-bit. The 32-bit unit always flushes subnormals to zero.

namespace velmora::neon {

struct Int4 {
    int32x4_t lanes;
};

struct Mask4 {
    uint32x4_t lanes;
};

struct Float4 {
    float32x4_t lanes;

    Float4() = default;
    Float4(float32x4_t all) : lanes(all) {}
    Float4(float all) : lanes(vdupq_n_f32(all)) {}
    Float4(float a, float b, float c, float d) {
        const float all[4] = {a, b, c, d};
        lanes = vld1q_f32(all);
    }
};

struct Short8 {
    uint16x8_t lanes;

    Short8() = default;
    Short8(uint16x8_t all) : lanes(all) {}
    explicit Short8(std::uint16_t all) : lanes(vdupq_n_u16(all)) {}
};

inline Short8 loadShorts(const std::uint16_t* from) {
    return vld1q_u16(from);
}
inline void store(std::uint16_t* to, Short8 value) {
    vst1q_u16(to, value.lanes);
}
inline Short8 operator+(Short8 a, Short8 b) {
    return vaddq_u16(a.lanes, b.lanes);
}

inline Float4 load(const float* from) {
    return vld1q_f32(from);
}
inline Float4 loadAligned(const float* from) {
    return load(from);
}
inline void store(float* to, Float4 value) {
    vst1q_f32(to, value.lanes);
}

inline void store(std::int32_t* to, Int4 value) {
    vst1q_s32(to, value.lanes);
}

inline Pair<Float4> loadPair(const float* from) {
    const float32x4x2_t cells = vld2q_f32(from);
    return {cells.val[0], cells.val[1]};
}
inline void storePair(float* to, Pair<Float4> cells) {
    // `both` must be a variable. In Clang, vst2q_f32 is a macro, and the comma inside the braces would split its
    // argument.
    const float32x4x2_t both{{cells.x.lanes, cells.y.lanes}};
    vst2q_f32(to, both);
}
inline void storeDifference(float* to, const float* from, Pair<Float4> change) {
    const Pair<Float4> cells = loadPair(from);
    storePair(to,
              {vsubq_f32(cells.x.lanes, change.x.lanes), vsubq_f32(cells.y.lanes, change.y.lanes)});
}

inline Float4 slideRight(Float4 before, Float4 cells) {
    return vextq_f32(before.lanes, cells.lanes, 3);
}

inline Float4 slideLeft(Float4 cells, Float4 after) {
    return vextq_f32(cells.lanes, after.lanes, 1);
}

inline void transpose(Float4& a, Float4& b, Float4& c, Float4& d) {
    const float32x4x2_t ab = vtrnq_f32(a.lanes, b.lanes);  // {a0 b0 a2 b2}, {a1 b1 a3 b3}
    const float32x4x2_t cd = vtrnq_f32(c.lanes, d.lanes);
    a = vcombine_f32(vget_low_f32(ab.val[0]), vget_low_f32(cd.val[0]));
    b = vcombine_f32(vget_low_f32(ab.val[1]), vget_low_f32(cd.val[1]));
    c = vcombine_f32(vget_high_f32(ab.val[0]), vget_high_f32(cd.val[0]));
    d = vcombine_f32(vget_high_f32(ab.val[1]), vget_high_f32(cd.val[1]));
}

inline Float4 operator+(Float4 a, Float4 b) {
    return vaddq_f32(a.lanes, b.lanes);
}
inline Float4 operator-(Float4 a, Float4 b) {
    return vsubq_f32(a.lanes, b.lanes);
}
inline Float4 operator*(Float4 a, Float4 b) {
    return vmulq_f32(a.lanes, b.lanes);
}

inline Float4 ramp(float start) {
    return Float4(start) + Float4(0.0f, 1.0f, 2.0f, 3.0f);
}

inline Mask4 operator<(Float4 a, Float4 b) {
    return {vcltq_f32(a.lanes, b.lanes)};
}
inline Mask4 operator>(Float4 a, Float4 b) {
    return b < a;
}
inline Mask4 operator|(Mask4 a, Mask4 b) {
    return {vorrq_u32(a.lanes, b.lanes)};
}
inline Mask4 operator&(Mask4 a, Mask4 b) {
    return {vandq_u32(a.lanes, b.lanes)};
}
inline Int4 minusOneWhere(Mask4 which, Int4 value) {
    return {vorrq_s32(vreinterpretq_s32_u32(which.lanes), value.lanes)};
}
inline bool any(Mask4 a) {
    const uint32x2_t halves = vorr_u32(vget_low_u32(a.lanes), vget_high_u32(a.lanes));
    return vget_lane_u64(vreinterpret_u64_u32(halves), 0) != 0;
}
inline Float4 select(Mask4 which, Float4 yes, Float4 no) {
    return vbslq_f32(which.lanes, yes.lanes, no.lanes);
}

// min and max must return b if an operand is NaN (simd/lanes.h). vminq_f32 and vmaxq_f32 return NaN instead, so this
// code compares and selects.
inline Float4 min(Float4 a, Float4 b) {
    return select(a < b, a, b);
}
inline Float4 max(Float4 a, Float4 b) {
    return select(a > b, a, b);
}

inline Float4 sqrt(Float4 a) {
#ifdef __aarch64__
    return vsqrtq_f32(a.lanes);
#else
    // Compute each lane in the scalar unit, which rounds square roots correctly. The 32-bit vector unit only estimates
    // square roots.
    return {velmora::sqrt(vgetq_lane_f32(a.lanes, 0)), velmora::sqrt(vgetq_lane_f32(a.lanes, 1)),
            velmora::sqrt(vgetq_lane_f32(a.lanes, 2)), velmora::sqrt(vgetq_lane_f32(a.lanes, 3))};
#endif
}

inline Int4 truncate(Float4 a) {
    // truncate must return INT32_MIN for a value that does not fit (simd/lanes.h). vcvtq_s32_f32 returns other numbers
    // for NaN and large values, so replace them.
    const uint32x4_t fits = vcaltq_f32(a.lanes, vdupq_n_f32(2147483648.0f));
    return {vbslq_s32(fits, vcvtq_s32_f32(a.lanes),
                      vdupq_n_s32(std::numeric_limits<std::int32_t>::min()))};
}
inline Int4 truncateSmall(Float4 a) {
    return {vcvtq_s32_f32(a.lanes)};
}
inline Float4 toFloat(Int4 a) {
    return vcvtq_f32_s32(a.lanes);
}

inline Pair<Float4> gatherPairs(const float* cells, Int4 index) {
    const auto cell = [&](std::int32_t at) { return vld1_f32(cells + std::ptrdiff_t{at} * 2); };
    const float32x4_t first =
        vcombine_f32(cell(vgetq_lane_s32(index.lanes, 0)), cell(vgetq_lane_s32(index.lanes, 1)));
    const float32x4_t second =
        vcombine_f32(cell(vgetq_lane_s32(index.lanes, 2)), cell(vgetq_lane_s32(index.lanes, 3)));
    const float32x4x2_t split = vuzpq_f32(first, second);
    return {split.val[0], split.val[1]};
}

inline Neighbours<Float4> gatherNeighbours(const float* cells, const std::int32_t* index) {
    const auto both = [&](std::int32_t at) { return vld1q_f32(cells + std::ptrdiff_t{at} * 2); };
    const float32x4_t lane0 = both(index[0]);
    const float32x4_t lane1 = both(index[1]);
    const float32x4_t lane2 = both(index[2]);
    const float32x4_t lane3 = both(index[3]);
    const auto split = [](float32x2_t a, float32x2_t b, float32x2_t c, float32x2_t d) {
        return vuzpq_f32(vcombine_f32(a, b), vcombine_f32(c, d));
    };
    const float32x4x2_t cell =
        split(vget_low_f32(lane0), vget_low_f32(lane1), vget_low_f32(lane2), vget_low_f32(lane3));
    const float32x4x2_t next = split(vget_high_f32(lane0), vget_high_f32(lane1),
                                     vget_high_f32(lane2), vget_high_f32(lane3));
    return {{cell.val[0], cell.val[1]}, {next.val[0], next.val[1]}};
}

inline void storeBytePairs(std::uint8_t* to, BytePairs<Int4> first, BytePairs<Int4> second) {
    const auto pairs = [](BytePairs<Int4> bytes) {
        const int32x4_t both = vorrq_s32(bytes.high.lanes, vshlq_n_s32(bytes.low.lanes, 8));
        return vmovn_u32(vreinterpretq_u32_s32(both));
    };
    vst1q_u8(to, vreinterpretq_u8_u16(vcombine_u16(pairs(first), pairs(second))));
}

}  // namespace velmora::neon
