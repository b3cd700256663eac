// Runs a program's text natively on all inputs: RUN_PLAIN, RUN_WORLD or RUN_GROUPS behind it.
//
// The threads of a group run one after the other, phase by phase: between two barriers no thread
// reads what another one writes. SIMD-groups are `width` threads with indices in a row.
#pragma once

#include "tests/TarnwickMSL/RandomPrograms/Metal.h"
#include "tests/TarnwickMSL/RandomPrograms/Shim/NativeTextures.h"

namespace tarnwick::trials::native {

#define RUN_PLAIN                                                                                  \
    void run(uint, uint* results) {                                                                \
        for (uint i = 0; i < trialInputs; i++)                                                     \
            results[i] = trial(trialInput(i));                                                     \
    }

inline const uint* constantMemory() {
    static const auto words = [] {
        std::array<uint, constantWords> made{};
        for (uint i = 0; i < constantWords; i++)
            made[i] = constantWord(i);
        return made;
    }();
    return words.data();
}

template <class Trial> void runInWorlds(Trial trial, uint* results) {
    for (uint i = 0; i < trialInputs; i++) {
        alignas(16) std::byte memory[memoryBytes] = {};
        Vec<uint, 4> texel(1 + i % 16 + 10 * (i / 16));
        texel = texel + Vec<uint, 4>(0u, 1u, 2u, 3u);
        const World world{.memory = reinterpret_cast<Vec<uint, 4>*>(memory),
                          .words = constantMemory(),
                          .board = {&texel},
                          .place = Vec<uint, 2>(i % 16, i / 16)};
        results[i] = trial(trialInput(i), world);
    }
}
#define RUN_WORLD                                                                                  \
    void run(uint, uint* results) {                                                                \
        runInWorlds(trial, results);                                                               \
    }

#define RUN_GROUPS                                                                                 \
    void run(uint width, uint* results) {                                                          \
        for (uint group = 0; group < trialInputs / trialGroup; group++)                            \
            whole(group, width, results + group * trialGroup);                                     \
    }
#define GROUP_PROGRAM void whole(uint group, uint width, uint* results)
#define GROUP_BEGIN                                                                                \
    Locals locals[trialGroup] = {};                                                                \
    Shared s;                                                                                      \
    atomic_uint counters[groupCounters] = {};
#define PHASE(phase) EACH(l.h = phase(lane, group, l, s, counters);)
#define EACH(statement)                                                                            \
    for (uint lane = 0; lane < trialGroup; lane++) {                                               \
        Locals& l = locals[lane];                                                                  \
        statement                                                                                  \
    }
#define GROUP_END EACH(results[lane] = l.h;)

// The active threads of a SIMD-group or a quad, as the native functions see them.
template <class T> struct Threads {
    uint width = 0, count = 0;
    uint lanes[64] = {}; // of the active ones
    T values[64] = {};   // of all
};
template <class Locals, class In, class Is, class Apply>
void eachSimdGroup(Locals* locals, uint width, In in, Is isActive, Apply apply) {
    for (uint first = 0; first < trialGroup; first += width) {
        Threads<decltype(in(locals[0]))> threads{.width = width};
        for (uint i = 0; i < width; i++) {
            threads.values[i] = in(locals[first + i]);
            if (isActive(locals[first + i], first + i))
                threads.lanes[threads.count++] = i;
        }
        for (uint k = 0; k < threads.count; k++)
            apply(locals[first + threads.lanes[k]], threads, threads.lanes[k], k);
    }
}
#define SIMD_OVER(size, condition, out, result, in)                                                \
    eachSimdGroup(                                                                                 \
        locals, size, [](const Locals& l) { return l.in; },                                        \
        [&](const Locals& l, uint lane) -> bool { return condition; },                             \
        [&](Locals& l, const auto& threads, uint lane, uint active) { l.out = result; });
#define SIMD(out, function, in) SIMD_IF(true, out, function, in)
#define SIMD_IF(condition, out, function, in)                                                      \
    SIMD_OVER(width, condition, out, function(threads, active), in)
#define SIMD_AT(out, function, in, at)                                                             \
    SIMD_OVER(width, true, out, threads.values[function(width, lane, at)], in)
#define QUAD_AT(out, function, in, at)                                                             \
    SIMD_OVER(4u, true, out, threads.values[function(4u, lane, at)], in)
#define SIMD_VOTE(out, function, in) SIMD_OVER(width, true, out, function(threads), in)

template <class T, class Join> T joined(const Threads<T>& threads, uint from, uint to, Join join) {
    T result = threads.values[threads.lanes[from]];
    for (uint k = from + 1; k < to; k++)
        result = join(result, threads.values[threads.lanes[k]]);
    return result;
}
#define REDUCTION(name, expression)                                                                \
    template <class T> T name(const Threads<T>& threads, uint) {                                   \
        return joined(threads, 0, threads.count, [](T a, T b) { return T(expression); });          \
    }
REDUCTION(simd_sum, a + b)
REDUCTION(simd_and, a& b)
REDUCTION(simd_or, a | b)
REDUCTION(simd_xor, a ^ b)
REDUCTION(simd_min, a < b ? a : b)
REDUCTION(simd_max, a < b ? b : a)
#undef REDUCTION
template <class T> T simd_prefix_inclusive_sum(const Threads<T>& threads, uint active) {
    return joined(threads, 0, active + 1, [](T a, T b) { return T(a + b); });
}
template <class T> T simd_prefix_exclusive_sum(const Threads<T>& threads, uint active) {
    return active == 0 ? T(0) : joined(threads, 0, active, [](T a, T b) { return T(a + b); });
}
template <class T> T simd_broadcast_first(const Threads<T>& threads, uint) {
    return threads.values[threads.lanes[0]];
}
inline uint simd_broadcast(uint, uint, uint at) {
    return at;
}
inline uint simd_shuffle(uint, uint, uint at) {
    return at;
}
inline uint simd_shuffle_xor(uint, uint lane, uint mask) {
    return lane ^ mask;
}
inline uint simd_shuffle_rotate_up(uint width, uint lane, uint by) {
    return (lane + width - by) % width;
}
inline uint simd_shuffle_rotate_down(uint width, uint lane, uint by) {
    return (lane + by) % width;
}
inline uint quad_broadcast(uint, uint, uint at) {
    return at;
}
inline uint quad_shuffle(uint, uint, uint at) {
    return at;
}
inline uint quad_shuffle_xor(uint, uint lane, uint mask) {
    return lane ^ mask;
}
template <class T> uint simd_any(const Threads<T>& threads) {
    return simd_or(threads, 0) & 1;
}
template <class T> uint simd_all(const Threads<T>& threads) {
    return simd_and(threads, 0) & 1;
}

// Atomic numbers, which one thread at a time changes here.
template <class T> struct Atomic { T value = 0; };
using atomic_uint = Atomic<uint>;
using atomic_int = Atomic<int>;
enum memory_order { memory_order_relaxed };
#define ATOMIC(name, expression)                                                                   \
    template <class T> T name(Atomic<T>* at, T b, memory_order) {                                  \
        const T a = at->value;                                                                     \
        at->value = expression;                                                                    \
        return a;                                                                                  \
    }
ATOMIC(atomic_fetch_add_explicit, a + b)
ATOMIC(atomic_fetch_sub_explicit, a - b)
ATOMIC(atomic_fetch_and_explicit, a& b)
ATOMIC(atomic_fetch_or_explicit, a | b)
ATOMIC(atomic_fetch_xor_explicit, a ^ b)
ATOMIC(atomic_fetch_min_explicit, a < b ? a : b)
ATOMIC(atomic_fetch_max_explicit, a < b ? b : a)
#undef ATOMIC
template <class T> void atomic_store_explicit(Atomic<T>* at, T value, memory_order) {
    at->value = value;
}
template <class T> T atomic_load_explicit(const Atomic<T>* at, memory_order) {
    return at->value;
}

} // namespace tarnwick::trials::native
