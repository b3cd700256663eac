// Metal's vectors and matrices for the native compiler, lane by lane.
#pragma once

#include "tests/TarnwickMSL/RandomPrograms/Shim/NativeScalars.h"

namespace tarnwick::trials::native {

template <class T, int N> struct Vec;

// A swizzle: some lanes of the vector of N whose union it is a member of. `Value` is the vector
// that they make, a parameter so that its operators are found for the swizzle as well.
template <class Value, class T, int N, int... at> struct View {
    T lanes[N];

    Value value() const { return Value(lanes[at]...); }
    operator Value() const { return value(); }
    View& operator=(Value from) { // by value: it may be the vector itself, as in v.yx = v
        int next = 0;
        ((lanes[at] = from[next++]), ...);
        return *this;
    }
    View& operator=(const View& other) { return *this = other.value(); }
};

// The lanes of a vector, by index, by name and by swizzles.
template <class T, int N> struct Lanes;
#define VIEW(name, ...) View<Vec<T, sizeof #name - 1>, T, lane_count, __VA_ARGS__> name;
#define LANES(count, views, ...)                                                                   \
    template <class T> struct Lanes<T, count> {                                                    \
        static constexpr int lane_count = count;                                                   \
        union {                                                                                    \
            T lanes[count] = {};                                                                   \
            struct {                                                                               \
                T __VA_ARGS__;                                                                     \
            };                                                                                     \
            views                                                                                  \
        };                                                                                         \
        Lanes() {}                                                                                 \
    };
// clang-format off
LANES(2, VIEW(xy, 0, 1) VIEW(yx, 1, 0) VIEW(xx, 0, 0) VIEW(yy, 1, 1) VIEW(xyx, 0, 1, 0)
      VIEW(yyx, 1, 1, 0) VIEW(xyxy, 0, 1, 0, 1),
      x, y)
LANES(3, VIEW(xy, 0, 1) VIEW(yx, 1, 0) VIEW(zx, 2, 0) VIEW(yz, 1, 2) VIEW(zz, 2, 2)
      VIEW(yzx, 1, 2, 0) VIEW(zxy, 2, 0, 1) VIEW(zyx, 2, 1, 0) VIEW(xxy, 0, 0, 1)
      VIEW(xyzx, 0, 1, 2, 0),
      x, y, z)
LANES(4, VIEW(xy, 0, 1) VIEW(zw, 2, 3) VIEW(wx, 3, 0) VIEW(yx, 1, 0) VIEW(ww, 3, 3)
      VIEW(xyz, 0, 1, 2) VIEW(wzy, 3, 2, 1) VIEW(yzw, 1, 2, 3) VIEW(yzwx, 1, 2, 3, 0)
      VIEW(wzyx, 3, 2, 1, 0) VIEW(zwxy, 2, 3, 0, 1) VIEW(xxww, 0, 0, 3, 3),
      x, y, z, w)
// clang-format on
#undef VIEW
#undef LANES

#define OPERATOR(sign)                                                                             \
    friend Vec operator sign(const Vec& a, const Vec& b) {                                         \
        return made([&](int i) { return T(a[i] sign b[i]); });                                     \
    }                                                                                              \
    friend Vec operator sign(const Vec& a, T b) {                                                  \
        return a sign Vec(b);                                                                      \
    }                                                                                              \
    friend Vec operator sign(T a, const Vec& b) {                                                  \
        return Vec(a) sign b;                                                                      \
    }                                                                                              \
    friend Vec& operator sign##=(Vec& a, const Vec& b) {                                           \
        return a = a sign b;                                                                       \
    }                                                                                              \
    friend Vec& operator sign##=(Vec& a, T b) {                                                    \
        return a = a sign Vec(b);                                                                  \
    }
#define COMPARISON(sign)                                                                           \
    friend Vec<bool, N> operator sign(const Vec& a, const Vec& b) {                                \
        return Vec<bool, N>::made([&](int i) { return a[i] sign b[i]; });                          \
    }
#define FUNCTION(name)                                                                             \
    friend Vec name(const Vec& a) {                                                                \
        return made([&](int i) { return native::name(a[i]); });                                    \
    }
#define FUNCTION_OF_TWO(name)                                                                      \
    friend Vec name(const Vec& a, const Vec& b) {                                                  \
        return made([&](int i) { return static_cast<T>(native::name(a[i], b[i])); });              \
    }
#define FUNCTION_OF_THREE(name)                                                                    \
    friend Vec name(const Vec& a, const Vec& b, const Vec& c) {                                    \
        return made([&](int i) { return native::name(a[i], b[i], c[i]); });                        \
    }
#define FUNCTION_OF_LOGIC(sign)                                                                    \
    friend Vec operator sign(const Vec& a, const Vec& b) {                                         \
        return made([&](int i) { return a[i] sign b[i]; });                                        \
    }

template <class T, int N> struct Vec : Lanes<T, N> {
    using Lanes<T, N>::lanes;

    Vec() = default;
    Vec(const Vec& other) { *this = other; }
    Vec& operator=(const Vec& other) {
        for (int i = 0; i < N; i++)
            lanes[i] = other.lanes[i];
        return *this;
    }
    explicit Vec(T all) { std::fill_n(lanes, N, all); }
    template <class U> explicit Vec(const Vec<U, N>& other) {
        for (int i = 0; i < N; i++)
            lanes[i] = T(other[i]);
    }
    template <class U, int M, int... at> explicit Vec(const View<Vec<U, N>, U, M, at...>& other) {
        const Vec<U, N> from = other.value();
        for (int i = 0; i < N; i++)
            lanes[i] = T(from[i]);
    }
    // Of parts side by side.
    template <class First, class Second, class... More>
    Vec(const First& first, const Second& second, const More&... more) {
        int next = 0;
        take(next, first), take(next, second), (take(next, more), ...);
    }
    template <class Lane> static Vec made(Lane lane) {
        Vec result;
        for (int i = 0; i < N; i++)
            result.lanes[i] = lane(i);
        return result;
    }
    template <class I> T& operator[](I lane) { return lanes[lane]; }
    template <class I> const T& operator[](I lane) const { return lanes[lane]; }

    OPERATOR(+)
    OPERATOR(-)
    OPERATOR(*)
    OPERATOR(/)
    OPERATOR(%)
    OPERATOR(&)
    OPERATOR(^)
    OPERATOR(|)
    OPERATOR(>>)
    OPERATOR(<<)
    FUNCTION_OF_LOGIC(&&)
    FUNCTION_OF_LOGIC(||)
    COMPARISON(<)
    COMPARISON(<=)
    COMPARISON(>)
    COMPARISON(>=)
    COMPARISON(==)
    COMPARISON(!=)
    FUNCTION(floor)
    FUNCTION(ceil)
    FUNCTION(trunc)
    FUNCTION(rint)
    FUNCTION(round)
    FUNCTION(fract)
    FUNCTION(abs)
    FUNCTION(popcount)
    FUNCTION(clz)
    FUNCTION(ctz)
    FUNCTION(reverse_bits)
    FUNCTION_OF_TWO(rotate)
    FUNCTION_OF_TWO(mulhi)
    FUNCTION_OF_TWO(absdiff)
    FUNCTION_OF_TWO(addsat)
    FUNCTION_OF_TWO(subsat)
    FUNCTION_OF_TWO(hadd)
    FUNCTION_OF_TWO(rhadd)
    FUNCTION_OF_TWO(min)
    FUNCTION_OF_TWO(max)
    FUNCTION_OF_THREE(madhi)
    FUNCTION_OF_THREE(madsat)
    FUNCTION_OF_THREE(mad24)
    FUNCTION_OF_THREE(min3)
    FUNCTION_OF_THREE(max3)
    FUNCTION_OF_THREE(median3)
    friend Vec extract_bits(const Vec& a, unsigned offset, unsigned count) {
        return made([&](int i) { return native::extract_bits(a[i], offset, count); });
    }
    friend Vec insert_bits(const Vec& a, const Vec& b, unsigned offset, unsigned count) {
        return made([&](int i) { return native::insert_bits(a[i], b[i], offset, count); });
    }
    friend Vec operator~(const Vec& a) {
        return made([&](int i) { return static_cast<T>(~a[i]); });
    }
    friend Vec operator!(const Vec& a) {
        return made([&](int i) { return !a[i]; });
    }
    friend Vec operator-(const Vec& a) {
        return made([&](int i) { return -a[i]; });
    }
    friend Vec select(const Vec& no, const Vec& yes, const Vec<bool, N>& which) {
        return made([&](int i) { return which[i] ? yes[i] : no[i]; });
    }
    friend T dot(const Vec& a, const Vec& b) {
        T sum = 0;
        for (int i = 0; i < N; i++)
            sum += a[i] * b[i];
        return sum;
    }

  private:
    void take(int& next, T value) { lanes[next++] = value; }
    template <int M> void take(int& next, const Vec<T, M>& part) {
        for (int i = 0; i < M; i++)
            lanes[next++] = part[i];
    }
    template <int M, int L, int... at>
    void take(int& next, const View<Vec<T, M>, T, L, at...>& part) {
        take(next, part.value());
    }
};

template <int N> bool any(const Vec<bool, N>& lanes) {
    return std::any_of(lanes.lanes, lanes.lanes + N, [](bool lane) { return lane; });
}
template <int N> bool all(const Vec<bool, N>& lanes) {
    return std::all_of(lanes.lanes, lanes.lanes + N, [](bool lane) { return lane; });
}

// C columns of R floats or halves.
template <class T, int C, int R> struct Mat {
    using Column = Vec<T, R>;
    Column columns[C];

    Mat() = default;
    template <class... Rest>
    Mat(const Column& first, const Rest&... rest) : columns{first, Column(rest)...} {}
    template <class I> Column& operator[](I column) { return columns[column]; }
    template <class I> const Column& operator[](I column) const { return columns[column]; }

    friend Mat operator+(const Mat& a, const Mat& b) {
        return made([&](int i) { return a[i] + b[i]; });
    }
    friend Mat operator-(const Mat& a, const Mat& b) {
        return made([&](int i) { return a[i] - b[i]; });
    }
    friend Mat operator*(const Mat& a, T b) {
        return made([&](int i) { return a[i] * b; });
    }
    friend Column operator*(const Mat& a, const Vec<T, C>& b) {
        Column sum;
        for (int i = 0; i < C; i++)
            sum += a[i] * b[i];
        return sum;
    }
    friend Vec<T, C> operator*(const Vec<T, R>& a, const Mat& b) {
        return Vec<T, C>::made([&](int i) { return dot(a, b[i]); });
    }
    friend Mat<T, R, C> transpose(const Mat& a) {
        Mat<T, R, C> result;
        for (int i = 0; i < C; i++)
            for (int j = 0; j < R; j++)
                result[j][i] = a[i][j];
        return result;
    }

  private:
    template <class Lane> static Mat made(Lane column) {
        Mat result;
        for (int i = 0; i < C; i++)
            result[i] = column(i);
        return result;
    }
};

template <class T, int C, int R, int K>
Mat<T, K, R> operator*(const Mat<T, C, R>& a, const Mat<T, K, C>& b) {
    Mat<T, K, R> result;
    for (int i = 0; i < K; i++)
        result[i] = a * b[i];
    return result;
}

#undef OPERATOR
#undef COMPARISON
#undef FUNCTION
#undef FUNCTION_OF_TWO
#undef FUNCTION_OF_THREE
#undef FUNCTION_OF_LOGIC

// The bits of a number or of a vector's lanes as another type of that size.
template <class T> const void* bitsIn(const T& value) {
    return &value;
}
template <class T, int N> const void* bitsIn(const Vec<T, N>& value) {
    return value.lanes;
}
template <class T> void* bitsIn(T& value) {
    return &value;
}
template <class T, int N> void* bitsIn(Vec<T, N>& value) {
    return value.lanes;
}
template <class T, class From> T as_type(const From& from) {
    static_assert(sizeof(T) == sizeof(From));
    T result;
    std::memcpy(bitsIn(result), bitsIn(from), sizeof(T));
    return result;
}

#define VECTORS(type)                                                                              \
    using type##2 = Vec<type, 2>;                                                                  \
    using type##3 = Vec<type, 3>;                                                                  \
    using type##4 = Vec<type, 4>;                                                                  \
    using packed_##type##2 = type##2;                                                              \
    using packed_##type##3 = type##3;                                                              \
    using packed_##type##4 = type##4;
VECTORS(uint)
VECTORS(int)
VECTORS(float)
VECTORS(half)
VECTORS(char)
VECTORS(uchar)
VECTORS(short)
VECTORS(ushort)
VECTORS(long)
VECTORS(ulong)
VECTORS(bool)
#undef VECTORS
#define MATRICES(type)                                                                             \
    using type##2x2 = Mat<type, 2, 2>;                                                             \
    using type##2x3 = Mat<type, 2, 3>;                                                             \
    using type##2x4 = Mat<type, 2, 4>;                                                             \
    using type##3x2 = Mat<type, 3, 2>;                                                             \
    using type##3x3 = Mat<type, 3, 3>;                                                             \
    using type##3x4 = Mat<type, 3, 4>;                                                             \
    using type##4x2 = Mat<type, 4, 2>;                                                             \
    using type##4x3 = Mat<type, 4, 3>;                                                             \
    using type##4x4 = Mat<type, 4, 4>;
MATRICES(float)
MATRICES(half)
#undef MATRICES

} // namespace tarnwick::trials::native
