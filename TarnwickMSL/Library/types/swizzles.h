// Swizzles of the vector classes (bool and packed vectors), as properties: they take no storage,
// and Clang reads one from the precompiled library only if a program uses it.
//
// MSL_SWIZZLES_n(V) is for a class of n lanes with `lane(i)` and `set_lane(i, value)`; V<m> is the
// type of a swizzle of m lanes.
#pragma once

// Lanes without repetition, in all orders: only such swizzles can be assigned to.
#define MSL_DISTINCT_01 ~, 1
#define MSL_DISTINCT_02 ~, 1
#define MSL_DISTINCT_03 ~, 1
#define MSL_DISTINCT_10 ~, 1
#define MSL_DISTINCT_12 ~, 1
#define MSL_DISTINCT_13 ~, 1
#define MSL_DISTINCT_20 ~, 1
#define MSL_DISTINCT_21 ~, 1
#define MSL_DISTINCT_23 ~, 1
#define MSL_DISTINCT_30 ~, 1
#define MSL_DISTINCT_31 ~, 1
#define MSL_DISTINCT_32 ~, 1
#define MSL_DISTINCT_012 ~, 1
#define MSL_DISTINCT_013 ~, 1
#define MSL_DISTINCT_021 ~, 1
#define MSL_DISTINCT_023 ~, 1
#define MSL_DISTINCT_031 ~, 1
#define MSL_DISTINCT_032 ~, 1
#define MSL_DISTINCT_102 ~, 1
#define MSL_DISTINCT_103 ~, 1
#define MSL_DISTINCT_120 ~, 1
#define MSL_DISTINCT_123 ~, 1
#define MSL_DISTINCT_130 ~, 1
#define MSL_DISTINCT_132 ~, 1
#define MSL_DISTINCT_201 ~, 1
#define MSL_DISTINCT_203 ~, 1
#define MSL_DISTINCT_210 ~, 1
#define MSL_DISTINCT_213 ~, 1
#define MSL_DISTINCT_230 ~, 1
#define MSL_DISTINCT_231 ~, 1
#define MSL_DISTINCT_301 ~, 1
#define MSL_DISTINCT_302 ~, 1
#define MSL_DISTINCT_310 ~, 1
#define MSL_DISTINCT_312 ~, 1
#define MSL_DISTINCT_320 ~, 1
#define MSL_DISTINCT_321 ~, 1
#define MSL_DISTINCT_0123 ~, 1
#define MSL_DISTINCT_0132 ~, 1
#define MSL_DISTINCT_0213 ~, 1
#define MSL_DISTINCT_0231 ~, 1
#define MSL_DISTINCT_0312 ~, 1
#define MSL_DISTINCT_0321 ~, 1
#define MSL_DISTINCT_1023 ~, 1
#define MSL_DISTINCT_1032 ~, 1
#define MSL_DISTINCT_1203 ~, 1
#define MSL_DISTINCT_1230 ~, 1
#define MSL_DISTINCT_1302 ~, 1
#define MSL_DISTINCT_1320 ~, 1
#define MSL_DISTINCT_2013 ~, 1
#define MSL_DISTINCT_2031 ~, 1
#define MSL_DISTINCT_2103 ~, 1
#define MSL_DISTINCT_2130 ~, 1
#define MSL_DISTINCT_2301 ~, 1
#define MSL_DISTINCT_2310 ~, 1
#define MSL_DISTINCT_3012 ~, 1
#define MSL_DISTINCT_3021 ~, 1
#define MSL_DISTINCT_3102 ~, 1
#define MSL_DISTINCT_3120 ~, 1
#define MSL_DISTINCT_3201 ~, 1
#define MSL_DISTINCT_3210 ~, 1

// 1 if the name is one of these, otherwise 0.
#define MSL_IS_DISTINCT(...) MSL_SECOND(__VA_ARGS__, 0, ~)
#define MSL_SECOND(a, b, ...) b

#define MSL_SWIZZLE(isTarget, ...) MSL_SWIZZLE_OF(isTarget, __VA_ARGS__)
#define MSL_SWIZZLE_OF(isTarget, ...) MSL_TARGET_##isTarget(__VA_ARGS__)

#define MSL_TARGET_0(V, n, name, lanes, stores)                                                    \
    __declspec(property(get = get_##name)) V<n> name;                                              \
    MSL_INLINE V<n> get_##name() const { return msl_make<V<n>> lanes; }

#define MSL_TARGET_1(V, n, name, lanes, stores)                                                    \
    __declspec(property(get = get_##name, put = put_##name)) V<n> name;                            \
    MSL_INLINE V<n> get_##name() const { return msl_make<V<n>> lanes; }                            \
    MSL_INLINE void put_##name(V<n> v) { stores; }

#define MSL_SWIZZLE_2(V, a, i, b, j)                                                               \
    MSL_SWIZZLE(MSL_IS_DISTINCT(MSL_DISTINCT_##i##j), V, 2, a##b, (lane(i), lane(j)),              \
                (set_lane(i, v.x), set_lane(j, v.y)))

#define MSL_SWIZZLE_3(V, a, i, b, j, c, k)                                                         \
    MSL_SWIZZLE(MSL_IS_DISTINCT(MSL_DISTINCT_##i##j##k), V, 3, a##b##c,                            \
                (lane(i), lane(j), lane(k)),                                                       \
                (set_lane(i, v.x), set_lane(j, v.y), set_lane(k, v.z)))

#define MSL_SWIZZLE_4(V, a, i, b, j, c, k, d, l)                                                   \
    MSL_SWIZZLE(MSL_IS_DISTINCT(MSL_DISTINCT_##i##j##k##l), V, 4, a##b##c##d,                      \
                (lane(i), lane(j), lane(k), lane(l)),                                              \
                (set_lane(i, v.x), set_lane(j, v.y), set_lane(k, v.z), set_lane(l, v.w)))

// One macro for each letter of a swizzle, with a name for each depth, since a macro cannot nest.
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

