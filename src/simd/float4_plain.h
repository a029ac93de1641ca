#pragma once

#include <cstdint>
#include <cstring>

#include "simd/lanes.h"

// Four-lane vectors as a plain struct, for processors that have no vector unit. Tests compare the other implementations
// with this one.

namespace velmora::plain {

struct Int4 {
    std::int32_t lane[4];
};

struct Mask4 {
    bool lane[4];
};

struct Float4 {
    float lane[4];

    Float4() = default;
    Float4(float all) : lane{all, all, all, all} {}
    Float4(float a, float b, float c, float d) : lane{a, b, c, d} {}
};

/// Eight 16-bit lanes. Sums wrap modulo 65536.
struct Short8 {
    std::uint16_t lane[8];

    Short8() = default;
    explicit Short8(std::uint16_t all) : lane{all, all, all, all, all, all, all, all} {}
};

inline Short8 loadShorts(const std::uint16_t* from) {
    Short8 result;
    std::memcpy(result.lane, from, sizeof result.lane);
    return result;
}
inline void store(std::uint16_t* to, Short8 value) {
    std::memcpy(to, value.lane, sizeof value.lane);
}
inline Short8 operator+(Short8 a, Short8 b) {
    for (int k = 0; k < 8; ++k) {
        a.lane[k] = static_cast<std::uint16_t>(a.lane[k] + b.lane[k]);
    }
    return a;
}

template <class Operation>
Float4 eachLane(Float4 a, Float4 b, Operation operation) {
    Float4 result;
    for (int k = 0; k < 4; ++k) {
        result.lane[k] = operation(a.lane[k], b.lane[k]);
    }
    return result;
}

template <class Operation>
Mask4 eachMask(Float4 a, Float4 b, Operation operation) {
    Mask4 result;
    for (int k = 0; k < 4; ++k) {
        result.lane[k] = operation(a.lane[k], b.lane[k]);
    }
    return result;
}

inline Float4 load(const float* from) {
    return {from[0], from[1], from[2], from[3]};
}
inline Float4 loadAligned(const float* from) {
    return load(from);
}
inline void store(float* to, Float4 value) {
    std::memcpy(to, value.lane, sizeof value.lane);
}

inline void store(std::int32_t* to, Int4 value) {
    std::memcpy(to, value.lane, sizeof value.lane);
}

inline Pair<Float4> loadPair(const float* from) {
    return {{from[0], from[2], from[4], from[6]}, {from[1], from[3], from[5], from[7]}};
}
inline void storePair(float* to, Pair<Float4> cells) {
    for (int k = 0; k < 4; ++k) {
        to[2 * k] = cells.x.lane[k];
        to[2 * k + 1] = cells.y.lane[k];
    }
}
inline void storeDifference(float* to, const float* from, Pair<Float4> change) {
    for (int k = 0; k < 4; ++k) {
        to[2 * k] = from[2 * k] - change.x.lane[k];
        to[2 * k + 1] = from[2 * k + 1] - change.y.lane[k];
    }
}

inline Float4 ramp(float start) {
    return {start, start + 1.0f, start + 2.0f, start + 3.0f};
}

inline Float4 slideRight(Float4 before, Float4 cells) {
    return {before.lane[3], cells.lane[0], cells.lane[1], cells.lane[2]};
}

inline Float4 slideLeft(Float4 cells, Float4 after) {
    return {cells.lane[1], cells.lane[2], cells.lane[3], after.lane[0]};
}

/// Transposes the 4 x 4 matrix whose rows are a, b, c and d.
inline void transpose(Float4& a, Float4& b, Float4& c, Float4& d) {
    const Float4 rows[4] = {a, b, c, d};
    const auto column = [&](int k) {
        return Float4(rows[0].lane[k], rows[1].lane[k], rows[2].lane[k], rows[3].lane[k]);
    };
    a = column(0);
    b = column(1);
    c = column(2);
    d = column(3);
}

inline Float4 operator+(Float4 a, Float4 b) {
    return eachLane(a, b, [](float x, float y) { return x + y; });
}
inline Float4 operator-(Float4 a, Float4 b) {
    return eachLane(a, b, [](float x, float y) { return x - y; });
}
inline Float4 operator*(Float4 a, Float4 b) {
    return eachLane(a, b, [](float x, float y) { return x * y; });
}
inline Float4 min(Float4 a, Float4 b) {
    return eachLane(a, b, [](float x, float y) { return velmora::min(x, y); });
}
inline Float4 max(Float4 a, Float4 b) {
    return eachLane(a, b, [](float x, float y) { return velmora::max(x, y); });
}
inline Float4 sqrt(Float4 a) {
    return eachLane(a, a, [](float x, float) { return velmora::sqrt(x); });
}

inline Mask4 operator<(Float4 a, Float4 b) {
    return eachMask(a, b, [](float x, float y) { return x < y; });
}
inline Mask4 operator>(Float4 a, Float4 b) {
    return b < a;
}
inline Mask4 operator|(Mask4 a, Mask4 b) {
    for (int k = 0; k < 4; ++k) {
        a.lane[k] = a.lane[k] || b.lane[k];
    }
    return a;
}
inline Mask4 operator&(Mask4 a, Mask4 b) {
    for (int k = 0; k < 4; ++k) {
        a.lane[k] = a.lane[k] && b.lane[k];
    }
    return a;
}
inline Int4 minusOneWhere(Mask4 which, Int4 value) {
    for (int k = 0; k < 4; ++k) {
        value.lane[k] = velmora::minusOneWhere(which.lane[k], value.lane[k]);
    }
    return value;
}
inline bool any(Mask4 a) {
    return a.lane[0] || a.lane[1] || a.lane[2] || a.lane[3];
}
inline Float4 select(Mask4 which, Float4 yes, Float4 no) {
    for (int k = 0; k < 4; ++k) {
        no.lane[k] = velmora::select(which.lane[k], yes.lane[k], no.lane[k]);
    }
    return no;
}

inline Int4 truncate(Float4 a) {
    return {{velmora::truncate(a.lane[0]), velmora::truncate(a.lane[1]),
             velmora::truncate(a.lane[2]), velmora::truncate(a.lane[3])}};
}
inline Int4 truncateSmall(Float4 a) {
    return truncate(a);
}
inline Float4 toFloat(Int4 a) {
    return {velmora::toFloat(a.lane[0]), velmora::toFloat(a.lane[1]), velmora::toFloat(a.lane[2]),
            velmora::toFloat(a.lane[3])};
}

inline Pair<Float4> gatherPairs(const float* cells, Int4 index) {
    Pair<Float4> result;
    for (int k = 0; k < 4; ++k) {
        const Pair<float> cell = velmora::gatherPairs(cells, index.lane[k]);
        result.x.lane[k] = cell.x;
        result.y.lane[k] = cell.y;
    }
    return result;
}

inline Neighbours<Float4> gatherNeighbours(const float* cells, const std::int32_t* index) {
    Int4 lanes;
    std::memcpy(lanes.lane, index, sizeof lanes.lane);
    return {gatherPairs(cells, lanes), gatherPairs(cells + 2, lanes)};
}

inline void storeBytePairs(std::uint8_t* to, BytePairs<Int4> first, BytePairs<Int4> second) {
    for (int k = 0; k < 4; ++k) {
        to[2 * k] = static_cast<std::uint8_t>(first.high.lane[k]);
        to[2 * k + 1] = static_cast<std::uint8_t>(first.low.lane[k]);
        to[2 * k + 8] = static_cast<std::uint8_t>(second.high.lane[k]);
        to[2 * k + 9] = static_cast<std::uint8_t>(second.low.lane[k]);
    }
}

}  // namespace velmora::plain
