// Atomic values (Metal Shading Language 3.1, 2.6 and 6.15). Each is stored as an integer: booleans
// as 0 and 1, floats as their bits.
#pragma once

#include "compute.h"

namespace metal {

template <class T> struct atomic;
template <> struct atomic<int> { int value; };
template <> struct atomic<uint> { uint value; };
template <> struct atomic<bool> { uint value; };
template <> struct atomic<float> { uint value; };
template <> struct atomic<ulong> { ulong value; };

typedef atomic<int> atomic_int;
typedef atomic<uint> atomic_uint;
typedef atomic<bool> atomic_bool;
typedef atomic<float> atomic_float;
typedef atomic<ulong> atomic_ulong;

#define MSL_RELAXED(order)                                                                         \
    __attribute__((diagnose_if(order != memory_order_relaxed,                                      \
                               "atomic operations require memory_order_relaxed", "error")))

#define MSL_ATOMIC_CALL(W, name, suffix) W _atomic_##name(W*, W) asm("msl.atomic_" #name "." suffix);
#define MSL_ATOMIC_WORD(W, suffix)                                                                 \
    W _atomic_load(W*) asm("msl.atomic_load." suffix);                                             \
    void _atomic_store(W*, W) asm("msl.atomic_store." suffix);                                     \
    W _atomic_compare_exchange(W*, W, W) asm("msl.atomic_compare_exchange." suffix);               \
    MSL_ATOMIC_CALL(W, exchange, suffix) MSL_ATOMIC_CALL(W, fetch_add, suffix)                     \
    MSL_ATOMIC_CALL(W, fetch_sub, suffix) MSL_ATOMIC_CALL(W, fetch_and, suffix)                    \
    MSL_ATOMIC_CALL(W, fetch_or, suffix) MSL_ATOMIC_CALL(W, fetch_xor, suffix)                     \
    MSL_ATOMIC_CALL(W, fetch_min, suffix) MSL_ATOMIC_CALL(W, fetch_max, suffix)
MSL_ATOMIC_WORD(int, "s32")
MSL_ATOMIC_WORD(uint, "u32")
MSL_ATOMIC_CALL(ulong, fetch_min, "u64")
MSL_ATOMIC_CALL(ulong, fetch_max, "u64")
float _atomic_fetch_add(uint*, float) asm("msl.atomic_fetch_add.f32");
#undef MSL_ATOMIC_WORD
#undef MSL_ATOMIC_CALL

template <class W> MSL_INLINE W* _word_of(const volatile W& value) { return const_cast<W*>(&value); }

// PUT converts a value to the word W that represents it, GET converts it back.
#define MSL_ATOMIC_VALUE(T, W, PUT, GET)                                                           \
    /** Reads the atomic value. */                                                                 \
    MSL_INLINE T atomic_load_explicit(const volatile atomic<T>* at, memory_order order)            \
        MSL_RELAXED(order) {                                                                       \
        return GET(_atomic_load(_word_of(at->value)));                                             \
    }                                                                                              \
    /** Writes the atomic value. */                                                                \
    MSL_INLINE void atomic_store_explicit(volatile atomic<T>* at, T value, memory_order order)     \
        MSL_RELAXED(order) {                                                                       \
        _atomic_store(_word_of(at->value), PUT(value));                                            \
    }                                                                                              \
    /** Writes the atomic value and returns the value before. */                                   \
    MSL_INLINE T atomic_exchange_explicit(volatile atomic<T>* at, T value, memory_order order)     \
        MSL_RELAXED(order) {                                                                       \
        return GET(_atomic_exchange(_word_of(at->value), PUT(value)));                             \
    }                                                                                              \
    /** Writes desired if the atomic value equals expected; otherwise reads it into expected. */   \
    MSL_INLINE bool atomic_compare_exchange_weak_explicit(volatile atomic<T>* at, T* expected,     \
                                                          T desired, memory_order success,         \
                                                          memory_order failure)                    \
        MSL_RELAXED(success) MSL_RELAXED(failure) {                                                \
        const W wanted = PUT(*expected);                                                           \
        const W before =                                                                           \
            _atomic_compare_exchange(_word_of(at->value), wanted, PUT(desired));                   \
        *expected = GET(before);                                                                   \
        return before == wanted;                                                                   \
    }
MSL_ATOMIC_VALUE(int, int, , )
MSL_ATOMIC_VALUE(uint, uint, , )
MSL_ATOMIC_VALUE(bool, uint, uint, bool)
MSL_ATOMIC_VALUE(float, uint, as_type<uint>, as_type<float>)
#undef MSL_ATOMIC_VALUE

#define MSL_ATOMIC_CHANGE(T, name)                                                                 \
    MSL_INLINE T atomic_##name##_explicit(volatile atomic<T>* at, T value, memory_order order)     \
        MSL_RELAXED(order) {                                                                       \
        return _atomic_##name(_word_of(at->value), value);                                         \
    }
#define MSL_ATOMIC_CHANGES(name) MSL_ATOMIC_CHANGE(int, name) MSL_ATOMIC_CHANGE(uint, name)
/** atomic_fetch_add_explicit: Adds to the atomic value and returns the value before. */
MSL_ATOMIC_CHANGES(fetch_add) MSL_ATOMIC_CHANGE(float, fetch_add)
MSL_ATOMIC_CHANGES(fetch_sub)
/** atomic_fetch_and_explicit: Combines the bits by AND and returns the value before. */
MSL_ATOMIC_CHANGES(fetch_and)
/** atomic_fetch_or_explicit: Combines the bits by OR and returns the value before. */
MSL_ATOMIC_CHANGES(fetch_or)
/** atomic_fetch_xor_explicit: Combines the bits by XOR and returns the value before. */
MSL_ATOMIC_CHANGES(fetch_xor)
/** atomic_fetch_min_explicit: Keeps the lesser value and returns the value before. */
MSL_ATOMIC_CHANGES(fetch_min)
/** atomic_fetch_max_explicit: Keeps the greater value and returns the value before. */
MSL_ATOMIC_CHANGES(fetch_max)
#undef MSL_ATOMIC_CHANGES
#undef MSL_ATOMIC_CHANGE

/** Subtracts from the atomic value and returns the value before. */
MSL_INLINE float atomic_fetch_sub_explicit(volatile atomic<float>* at, float value,
                                           memory_order order) MSL_RELAXED(order) {
    return _atomic_fetch_add(_word_of(at->value), -value);
}
/** Keeps the lesser value. */
MSL_INLINE void atomic_min_explicit(volatile atomic<ulong>* at, ulong value, memory_order order)
    MSL_RELAXED(order) {
    _atomic_fetch_min(_word_of(at->value), value);
}
/** Keeps the greater value. */
MSL_INLINE void atomic_max_explicit(volatile atomic<ulong>* at, ulong value, memory_order order)
    MSL_RELAXED(order) {
    _atomic_fetch_max(_word_of(at->value), value);
}

#undef MSL_RELAXED

} // namespace metal
