// Barriers and fences (Metal Shading Language 3.1, 6.9.1 and 6.15.3).
#pragma once

#include "construct.h"

#define MSL_CONVERGENT __attribute__((convergent, always_inline)) inline

namespace metal {

enum class mem_flags {
    mem_none = 0,
    mem_device = 1,
    mem_threadgroup = 2,
    mem_texture = 4,
    mem_object_data = 8
};
constexpr mem_flags operator|(mem_flags a, mem_flags b) { return mem_flags(int(a) | int(b)); }
constexpr mem_flags operator&(mem_flags a, mem_flags b) { return mem_flags(int(a) & int(b)); }

enum memory_order {
    memory_order_relaxed,
    memory_order_acquire,
    memory_order_release,
    memory_order_acq_rel,
    memory_order_seq_cst
};
enum thread_scope {
    thread_scope_thread,
    thread_scope_simdgroup,
    thread_scope_threadgroup,
    thread_scope_device
};

// Flags and scopes are numbers of these enumerations.
__attribute__((convergent)) void _barrier(int scope, int flags) asm("msl.barrier.1");
void _fence(int scope, int flags) asm("msl.fence.1");

/** Waits for all threads of the threadgroup, and for their memory that the flags name. */
MSL_CONVERGENT void threadgroup_barrier(mem_flags flags) {
    _barrier(thread_scope_threadgroup, int(flags));
}
/** Waits for all threads of the SIMD-group, and for their memory that the flags name. */
MSL_CONVERGENT void simdgroup_barrier(mem_flags flags) {
    _barrier(thread_scope_simdgroup, int(flags));
}
/** Orders this thread's accesses to the memory that the flags name. */
MSL_INLINE void atomic_thread_fence(mem_flags flags, memory_order order,
                                    thread_scope scope = thread_scope_device) {
    if (order != memory_order_relaxed && scope != thread_scope_thread)
        _fence(scope, int(flags));
}

} // namespace metal
