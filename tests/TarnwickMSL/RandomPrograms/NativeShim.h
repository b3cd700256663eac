// What a random program uses of Metal's language, for the native compiler.
#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace tarnwick::trials::native {

using uint = std::uint32_t;

using std::ceil;
using std::floor;
using std::rint;
using std::round;
using std::trunc;

inline int abs(int value) {
    return value < 0 ? -value : value;
}
inline float abs(float value) {
    return std::fabs(value);
}
inline float fract(float value) {
    return value - std::floor(value);
}
inline uint popcount(uint value) {
    return static_cast<uint>(std::popcount(value));
}

template <class T> T min(T a, T b) {
    return b < a ? b : a;
}
template <class T> T max(T a, T b) {
    return a < b ? b : a;
}
template <class T> T clamp(T value, T low, T high) {
    return min(max(value, low), high);
}

struct uint4 {
    // The swizzles that programs use, as views of the four lanes.
    template <int a, int b, int c, int d> struct View {
        uint lanes[4];
        operator uint4() const { return {lanes[a], lanes[b], lanes[c], lanes[d]}; }
    };
    union {
        uint lanes[4];
        struct {
            uint x, y, z, w;
        };
        View<1, 2, 3, 0> yzwx;
        View<0, 0, 3, 3> xxww;
        View<3, 2, 1, 0> wzyx;
    };
    explicit uint4(uint all) : lanes{all, all, all, all} {}
    uint4(uint x0, uint y0, uint z0, uint w0) : lanes{x0, y0, z0, w0} {}
    uint& operator[](uint lane) { return lanes[lane]; }
};

inline uint4 operator+(uint4 a, uint4 b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z, a.w + b.w};
}
inline uint4 operator^(uint4 a, uint4 b) {
    return {a.x ^ b.x, a.y ^ b.y, a.z ^ b.z, a.w ^ b.w};
}
inline uint4 max(uint4 a, uint4 b) {
    return {max(a.x, b.x), max(a.y, b.y), max(a.z, b.z), max(a.w, b.w)};
}

} // namespace tarnwick::trials::native

// Metal's address spaces; no standard header may come after this one.
#define thread
#define constant const
