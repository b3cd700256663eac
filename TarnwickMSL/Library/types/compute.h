// Barriers and atomic operations (Metal Shading Language 3.1, 6.9 and 6.15).
#pragma once

#include "construct.h"

namespace metal {

enum class mem_flags { mem_none = 0, mem_device = 1, mem_threadgroup = 2, mem_texture = 4 };
constexpr mem_flags operator|(mem_flags a, mem_flags b) { return mem_flags(int(a) | int(b)); }

__attribute__((convergent)) void _barrier_threadgroup() asm("msl.barrier.threadgroup");
__attribute__((convergent)) void _barrier_device() asm("msl.barrier.device");
__attribute__((convergent)) void _barrier_texture() asm("msl.barrier.texture");

__attribute__((convergent, always_inline)) inline void threadgroup_barrier(mem_flags flags) {
    if (int(flags) & int(mem_flags::mem_device))
        _barrier_device();
    if (int(flags) & int(mem_flags::mem_texture))
        _barrier_texture();
    if (!(int(flags) & int(mem_flags::mem_device)) || (int(flags) & int(mem_flags::mem_threadgroup)))
        _barrier_threadgroup();
}
__attribute__((convergent, always_inline)) inline void simdgroup_barrier(mem_flags flags) {
    threadgroup_barrier(flags);
}

enum memory_order { memory_order_relaxed };

template <class T> struct atomic {
    T value;
};

#define MSL_ATOMIC_CALL(T, name, suffix)                                                           \
    T atomic_call_##name(T*, T) asm("msl.atomic_" #name "." suffix);
#define MSL_ATOMIC_CHANGE(T, name)                                                                 \
    MSL_INLINE T atomic_##name##_explicit(volatile atomic<T>* at, T value, memory_order) {         \
        return atomic_call_##name(const_cast<T*>(&at->value), value);                              \
    }
#define MSL_ATOMICS(T, suffix)                                                                     \
    T atomic_call_load(T*) asm("msl.atomic_load." suffix);                                         \
    void atomic_call_store(T*, T) asm("msl.atomic_store." suffix);                                 \
    T atomic_call_compare_exchange(T*, T, T) asm("msl.atomic_compare_exchange." suffix);           \
    MSL_ATOMIC_CALL(T, exchange, suffix)                                                           \
    MSL_ATOMIC_CALL(T, fetch_add, suffix)                                                          \
    MSL_ATOMIC_CALL(T, fetch_sub, suffix)                                                          \
    MSL_ATOMIC_CALL(T, fetch_and, suffix)                                                          \
    MSL_ATOMIC_CALL(T, fetch_or, suffix)                                                           \
    MSL_ATOMIC_CALL(T, fetch_xor, suffix)                                                          \
    MSL_ATOMIC_CALL(T, fetch_min, suffix)                                                          \
    MSL_ATOMIC_CALL(T, fetch_max, suffix)                                                          \
    MSL_ATOMIC_CHANGE(T, exchange)                                                                 \
    MSL_ATOMIC_CHANGE(T, fetch_add)                                                                \
    MSL_ATOMIC_CHANGE(T, fetch_sub)                                                                \
    MSL_ATOMIC_CHANGE(T, fetch_and)                                                                \
    MSL_ATOMIC_CHANGE(T, fetch_or)                                                                 \
    MSL_ATOMIC_CHANGE(T, fetch_xor)                                                                \
    MSL_ATOMIC_CHANGE(T, fetch_min)                                                                \
    MSL_ATOMIC_CHANGE(T, fetch_max)                                                                \
    MSL_INLINE T atomic_load_explicit(const volatile atomic<T>* at, memory_order) {                \
        return atomic_call_load(const_cast<T*>(&at->value));                                       \
    }                                                                                              \
    MSL_INLINE void atomic_store_explicit(volatile atomic<T>* at, T value, memory_order) {         \
        atomic_call_store(const_cast<T*>(&at->value), value);                                      \
    }                                                                                              \
    MSL_INLINE bool atomic_compare_exchange_weak_explicit(volatile atomic<T>* at, T* expected,     \
                                                          T desired, memory_order,                 \
                                                          memory_order) {                          \
        const T before =                                                                           \
            atomic_call_compare_exchange(const_cast<T*>(&at->value), *expected, desired);          \
        const bool is_same = before == *expected;                                                  \
        *expected = before;                                                                        \
        return is_same;                                                                            \
    }
MSL_ATOMICS(int, "s32")
MSL_ATOMICS(uint, "u32")
#undef MSL_ATOMICS
#undef MSL_ATOMIC_CHANGE
#undef MSL_ATOMIC_CALL

typedef atomic<int> atomic_int;
typedef atomic<uint> atomic_uint;

} // namespace metal
