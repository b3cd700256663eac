// Matrices (Metal Shading Language 3.1, 2.3): C columns of R components, stored by columns. The
// code has no loops over columns, which would have to be unrolled later.
#pragma once

#include "bool_vectors.h"
#include "construct.h"

namespace metal {

// A column in braces, `{v2, 1}`: for a vector parameter C++ would find no constructor.
template <class Column> struct column_list {
    Column made;
    MSL_INLINE constexpr column_list(Column column) : made(column) {}
    template <class A, class B, class... Rest>
    MSL_INLINE constexpr column_list(A a, B b, Rest... rest)
        : made(msl_make<Column>(a, b, rest...)) {}
};

template <class T, int C, int R> struct matrix {
    typedef column_list<vec<T, R>> List;
    typedef vec<T, R> Column;
    typedef vec<T, C> Row;
    Column columns[C];

    matrix() = default;
    // A diagonal matrix.
    MSL_INLINE constexpr explicit matrix(T s) : columns{} {
        columns[0] = axis(0, s);
        columns[1] = axis(1, s);
        if constexpr (C > 2)
            columns[2] = axis(2, s);
        if constexpr (C > 3)
            columns[3] = axis(3, s);
    }
    template <int K = C, class = enable_if_t<K == 2>>
    MSL_INLINE constexpr matrix(Column a, Column b) : columns{a, b} {}
    template <int K = C, class = enable_if_t<K == 3>>
    MSL_INLINE constexpr matrix(Column a, Column b, Column c) : columns{a, b, c} {}
    template <int K = C, class = enable_if_t<K == 4>>
    MSL_INLINE constexpr matrix(Column a, Column b, Column c, Column d) : columns{a, b, c, d} {}
    template <int K = C, class = enable_if_t<K == 2>>
    MSL_INLINE constexpr matrix(List a, List b) : columns{a.made, b.made} {}
    template <int K = C, class = enable_if_t<K == 3>>
    MSL_INLINE constexpr matrix(List a, List b, List c) : columns{a.made, b.made, c.made} {}
    template <int K = C, class = enable_if_t<K == 4>>
    MSL_INLINE constexpr matrix(List a, List b, List c, List d)
        : columns{a.made, b.made, c.made, d.made} {}
    // All components, column by column.
    template <class... A, class = enable_if_t<sizeof...(A) == C * R && (... && (lanes_of<A> == 1))>>
    MSL_INLINE constexpr matrix(A... components) : columns{} {
        const T all[] = {static_cast<T>(components)...};
        columns[0] = column_of(all);
        columns[1] = column_of(all + R);
        if constexpr (C > 2)
            columns[2] = column_of(all + 2 * R);
        if constexpr (C > 3)
            columns[3] = column_of(all + 3 * R);
    }
    template <class U> MSL_INLINE constexpr explicit matrix(const matrix<U, C, R>& m) : columns{} {
        columns[0] = __builtin_convertvector(m.columns[0], Column);
        columns[1] = __builtin_convertvector(m.columns[1], Column);
        if constexpr (C > 2)
            columns[2] = __builtin_convertvector(m.columns[2], Column);
        if constexpr (C > 3)
            columns[3] = __builtin_convertvector(m.columns[3], Column);
    }

    MSL_INLINE constexpr Column& operator[](int i) { return columns[i]; }
    MSL_INLINE constexpr const Column& operator[](int i) const { return columns[i]; }

    MSL_INLINE matrix operator-() const {
        return each([](Column a) { return -a; }, *this);
    }
    MSL_INLINE matrix& operator*=(T s) { return *this = *this * s; }
    MSL_INLINE matrix& operator/=(T s) { return *this = *this / s; }

    MSL_INLINE matrix _plus(const matrix& m) const {
        return each([](Column x, Column y) { return x + y; }, *this, m);
    }
    MSL_INLINE matrix _minus(const matrix& m) const {
        return each([](Column x, Column y) { return x - y; }, *this, m);
    }
    MSL_INLINE bool _equals(const matrix& m) const {
        bool same = true;
        for (int i = 0; i < C; ++i)
            for (int j = 0; j < R; ++j)
                same = same & (columns[i][j] == m.columns[i][j]);
        return same;
    }
    template <class S, class = typename _number<S>::type>
    friend MSL_INLINE matrix operator*(const matrix& a, S s) {
        return each([s](Column x) { return x * T(s); }, a);
    }
    template <class S, class = typename _number<S>::type>
    friend MSL_INLINE matrix operator*(S s, const matrix& a) {
        return each([s](Column x) { return T(s) * x; }, a);
    }
    template <class S, class = typename _number<S>::type>
    friend MSL_INLINE matrix operator/(const matrix& a, S s) {
        return each([s](Column x) { return x / T(s); }, a);
    }
    friend MSL_INLINE Column operator*(const matrix& m, Row v) {
        Column sum = m.columns[0] * v[0] + m.columns[1] * v[1];
        if constexpr (C > 2)
            sum += m.columns[2] * v[2];
        if constexpr (C > 3)
            sum += m.columns[3] * v[3];
        return sum;
    }
    friend MSL_INLINE Row operator*(Column v, const matrix& m) {
        if constexpr (C == 2)
            return Row{inner(v, m.columns[0]), inner(v, m.columns[1])};
        else if constexpr (C == 3)
            return Row{inner(v, m.columns[0]), inner(v, m.columns[1]), inner(v, m.columns[2])};
        else
            return Row{inner(v, m.columns[0]), inner(v, m.columns[1]), inner(v, m.columns[2]),
                       inner(v, m.columns[3])};
    }

  private:
    static MSL_INLINE constexpr Column axis(int i, T s) {
        if constexpr (R == 2)
            return {i == 0 ? s : T(0), i == 1 ? s : T(0)};
        else if constexpr (R == 3)
            return {i == 0 ? s : T(0), i == 1 ? s : T(0), i == 2 ? s : T(0)};
        else
            return {i == 0 ? s : T(0), i == 1 ? s : T(0), i == 2 ? s : T(0), i == 3 ? s : T(0)};
    }
    static MSL_INLINE constexpr Column column_of(const T* at) {
        if constexpr (R == 2)
            return {at[0], at[1]};
        else if constexpr (R == 3)
            return {at[0], at[1], at[2]};
        else
            return {at[0], at[1], at[2], at[3]};
    }
    static MSL_INLINE T inner(Column a, Column b) {
        const Column p = a * b;
        if constexpr (R == 2)
            return p[0] + p[1];
        else if constexpr (R == 3)
            return p[0] + p[1] + p[2];
        else
            return p[0] + p[1] + p[2] + p[3];
    }
    template <class F, class... M> static MSL_INLINE matrix each(F f, const M&... m) {
        if constexpr (C == 2)
            return {f(m.columns[0]...), f(m.columns[1]...)};
        else if constexpr (C == 3)
            return {f(m.columns[0]...), f(m.columns[1]...), f(m.columns[2]...)};
        else
            return {f(m.columns[0]...), f(m.columns[1]...), f(m.columns[2]...),
                    f(m.columns[3]...)};
    }
};

// Templates, so that a program's own operators for its matrix types are better matches.
template <class T, int C, int R>
MSL_INLINE matrix<T, C, R> operator+(const matrix<T, C, R>& a, const matrix<T, C, R>& b) {
    return a._plus(b);
}
template <class T, int C, int R>
MSL_INLINE matrix<T, C, R> operator-(const matrix<T, C, R>& a, const matrix<T, C, R>& b) {
    return a._minus(b);
}
template <class T, int C, int R>
MSL_INLINE bool operator==(const matrix<T, C, R>& a, const matrix<T, C, R>& b) {
    return a._equals(b);
}
template <class T, int C, int R>
MSL_INLINE bool operator!=(const matrix<T, C, R>& a, const matrix<T, C, R>& b) {
    return !a._equals(b);
}

template <class T, int C, int R, int K>
MSL_INLINE matrix<T, K, R> operator*(const matrix<T, C, R>& a, const matrix<T, K, C>& b) {
    if constexpr (K == 2)
        return {a * b.columns[0], a * b.columns[1]};
    else if constexpr (K == 3)
        return {a * b.columns[0], a * b.columns[1], a * b.columns[2]};
    else
        return {a * b.columns[0], a * b.columns[1], a * b.columns[2], a * b.columns[3]};
}

template <class T, int C, int R>
MSL_INLINE matrix<T, C, R>& operator+=(matrix<T, C, R>& a, const matrix<T, C, R>& b) {
    return a = a + b;
}
template <class T, int C, int R>
MSL_INLINE matrix<T, C, R>& operator-=(matrix<T, C, R>& a, const matrix<T, C, R>& b) {
    return a = a - b;
}
template <class T, int C, int R>
MSL_INLINE matrix<T, C, R>& operator*=(matrix<T, C, R>& a, const matrix<T, C, C>& b) {
    return a = a * b;
}

template <class T, int N>
MSL_INLINE vec<T, N>& operator*=(vec<T, N>& v, const matrix<T, N, N>& m) {
    return v = v * m;
}

} // namespace metal

#define MSL_MATRICES(T)                                                                            \
    typedef metal::matrix<T, 2, 2> T##2x2;                                                         \
    typedef metal::matrix<T, 2, 3> T##2x3;                                                         \
    typedef metal::matrix<T, 2, 4> T##2x4;                                                         \
    typedef metal::matrix<T, 3, 2> T##3x2;                                                         \
    typedef metal::matrix<T, 3, 3> T##3x3;                                                         \
    typedef metal::matrix<T, 3, 4> T##3x4;                                                         \
    typedef metal::matrix<T, 4, 2> T##4x2;                                                         \
    typedef metal::matrix<T, 4, 3> T##4x3;                                                         \
    typedef metal::matrix<T, 4, 4> T##4x4;
MSL_MATRICES(float)
MSL_MATRICES(half)
#undef MSL_MATRICES

#define MSL_NAMES(T)                                                                               \
    using ::T##2x2, ::T##2x3, ::T##2x4, ::T##3x2, ::T##3x3, ::T##3x4, ::T##4x2, ::T##4x3, ::T##4x4;
namespace metal {
MSL_NAMES(float)
MSL_NAMES(half)
} // namespace metal
#undef MSL_NAMES

// Instantiates the common types here, once, rather than in every program.
namespace metal {
template <class M> MSL_INLINE void _matrix_used(M a) {
    _copied(a);
    a = a * a + a - -a;
    a *= a;
    a = a * 2.0f * 2 + 2.0f * a;
    typename M::Column v = a * a[0];
    v = v * a;
}
inline void _matrices_used(float2x2 a, float3x3 b, float4x4 c) {
    _matrix_used(a);
    _matrix_used(b);
    _matrix_used(c);
}
} // namespace metal
