// Swizzles of the vectors that are classes (bool and packed ones), as properties: no storage, and
// nothing of them is read from the precompiled library until a program names one.
//
// MSL_SWIZZLES_n(V) stands in a class of n lanes with `lane(i)` and `set_lane(i, value)`; V<m> is
// the type of a swizzle of m lanes.
#pragma once

#define MSL_PROPERTY(V, n, name) __declspec(property(get = get_##name, put = put_##name)) V<n> name;

#define MSL_SWIZZLE_2(V, a, i, b, j)                                                               \
    MSL_PROPERTY(V, 2, a##b)                                                                       \
    MSL_INLINE V<2> get_##a##b() const {                                                           \
        return msl_make<V<2>>(lane(i), lane(j));                                                   \
    }                                                                                              \
    MSL_INLINE void put_##a##b(V<2> v) {                                                           \
        set_lane(i, v.x), set_lane(j, v.y);                                                        \
    }

#define MSL_SWIZZLE_3(V, a, i, b, j, c, k)                                                         \
    MSL_PROPERTY(V, 3, a##b##c)                                                                    \
    MSL_INLINE V<3> get_##a##b##c() const {                                                        \
        return msl_make<V<3>>(lane(i), lane(j), lane(k));                                          \
    }                                                                                              \
    MSL_INLINE void put_##a##b##c(V<3> v) {                                                        \
        set_lane(i, v.x), set_lane(j, v.y), set_lane(k, v.z);                                      \
    }

#define MSL_SWIZZLE_4(V, a, i, b, j, c, k, d, l)                                                   \
    MSL_PROPERTY(V, 4, a##b##c##d)                                                                 \
    MSL_INLINE V<4> get_##a##b##c##d() const {                                                     \
        return msl_make<V<4>>(lane(i), lane(j), lane(k), lane(l));                                 \
    }                                                                                              \
    MSL_INLINE void put_##a##b##c##d(V<4> v) {                                                     \
        set_lane(i, v.x), set_lane(j, v.y), set_lane(k, v.z), set_lane(l, v.w);                    \
    }

// One step for each letter of a vector of n lanes; a name for each depth, since a macro cannot nest.
#define MSL_A_2(M, ...) M(__VA_ARGS__, x, 0) M(__VA_ARGS__, y, 1)
#define MSL_A_3(M, ...) MSL_A_2(M, __VA_ARGS__) M(__VA_ARGS__, z, 2)
#define MSL_A_4(M, ...) MSL_A_3(M, __VA_ARGS__) M(__VA_ARGS__, w, 3)
#define MSL_B_2(M, ...) M(__VA_ARGS__, x, 0) M(__VA_ARGS__, y, 1)
#define MSL_B_3(M, ...) MSL_B_2(M, __VA_ARGS__) M(__VA_ARGS__, z, 2)
#define MSL_B_4(M, ...) MSL_B_3(M, __VA_ARGS__) M(__VA_ARGS__, w, 3)
#define MSL_C_2(M, ...) M(__VA_ARGS__, x, 0) M(__VA_ARGS__, y, 1)
#define MSL_C_3(M, ...) MSL_C_2(M, __VA_ARGS__) M(__VA_ARGS__, z, 2)
#define MSL_C_4(M, ...) MSL_C_3(M, __VA_ARGS__) M(__VA_ARGS__, w, 3)
#define MSL_D_2(M, ...) M(__VA_ARGS__, x, 0) M(__VA_ARGS__, y, 1)
#define MSL_D_3(M, ...) MSL_D_2(M, __VA_ARGS__) M(__VA_ARGS__, z, 2)
#define MSL_D_4(M, ...) MSL_D_3(M, __VA_ARGS__) M(__VA_ARGS__, w, 3)

#define MSL_1_2(V, a, i) MSL_B_2(MSL_2_2, V, a, i)
#define MSL_2_2(V, a, i, b, j) MSL_SWIZZLE_2(V, a, i, b, j) MSL_C_2(MSL_3_2, V, a, i, b, j)
#define MSL_3_2(V, a, i, b, j, c, k)                                                               \
    MSL_SWIZZLE_3(V, a, i, b, j, c, k) MSL_D_2(MSL_SWIZZLE_4, V, a, i, b, j, c, k)
#define MSL_SWIZZLES_2(V)                                                                          \
    MSL_A_2(MSL_1_2, V)                                                                            \
    MSL_SWIZZLE_2(V, r, 0, g, 1)

#define MSL_1_3(V, a, i) MSL_B_3(MSL_2_3, V, a, i)
#define MSL_2_3(V, a, i, b, j) MSL_SWIZZLE_2(V, a, i, b, j) MSL_C_3(MSL_3_3, V, a, i, b, j)
#define MSL_3_3(V, a, i, b, j, c, k)                                                               \
    MSL_SWIZZLE_3(V, a, i, b, j, c, k) MSL_D_3(MSL_SWIZZLE_4, V, a, i, b, j, c, k)
#define MSL_SWIZZLES_3(V)                                                                          \
    MSL_A_3(MSL_1_3, V)                                                                            \
    MSL_SWIZZLE_2(V, r, 0, g, 1) MSL_SWIZZLE_3(V, r, 0, g, 1, b, 2)

#define MSL_1_4(V, a, i) MSL_B_4(MSL_2_4, V, a, i)
#define MSL_2_4(V, a, i, b, j) MSL_SWIZZLE_2(V, a, i, b, j) MSL_C_4(MSL_3_4, V, a, i, b, j)
#define MSL_3_4(V, a, i, b, j, c, k)                                                               \
    MSL_SWIZZLE_3(V, a, i, b, j, c, k) MSL_D_4(MSL_SWIZZLE_4, V, a, i, b, j, c, k)
#define MSL_SWIZZLES_4(V)                                                                          \
    MSL_A_4(MSL_1_4, V)                                                                            \
    MSL_SWIZZLE_2(V, r, 0, g, 1) MSL_SWIZZLE_3(V, r, 0, g, 1, b, 2) MSL_SWIZZLE_4(V, r, 0, g, 1, b, 2, a, 3)

