// The address space of a pointer, for functions that differ in it (Metal Shading Language 3.1, 4).
// The front end calls these; the step `address-spaces` answers, and Clang in a constant expression.
#pragma once

#include "traits.h"

namespace metal {

bool _is_device(const volatile void*) asm("msl.in_device.1");
bool _is_threadgroup(const volatile void*) asm("msl.in_threadgroup.1");
bool _is_constant(const volatile void*) asm("msl.in_constant.1");
bool _is_thread(const volatile void*) asm("msl.in_thread.1");

// A constant expression has no memory of the device or of a threadgroup.
constexpr bool _in_device(const volatile void* p) {
    return !__builtin_is_constant_evaluated() && _is_device(p);
}
constexpr bool _in_threadgroup(const volatile void* p) {
    return !__builtin_is_constant_evaluated() && _is_threadgroup(p);
}

// In a constant expression, memory of `thread` is that of variables whose life begins in the
// evaluation; all other memory is constant. After an effect that Clang does not follow, its evaluation
// can read constants, and no longer variables of the evaluation. It follows no write to a volatile
// variable, and goes on only for the size of an object, where effects do not count. So the size
// below is known if Clang can read the value, with an effect before the reading or without. None of
// it is ever run. Records are not read so: a function whose bodies differ for them is no constant.
extern const char _found[1];
extern volatile int _effect;
#define MSL_CAN_READ(value) (__builtin_object_size(bool(value) ? _found : _found, 0) == 1)
template <class T> constexpr bool _is_constant_value(const T* p, bool& isKnown) {
    if constexpr (is_scalar_v<T>) {
        isKnown = MSL_CAN_READ(p[0]);
        return MSL_CAN_READ(p[(_effect = 0, 0)]);
    } else if constexpr (__is_trivial(T) && !__is_class(T) && !__is_union(T) && !__is_array(T)) {
        isKnown = MSL_CAN_READ(T(p[0]).x);
        return MSL_CAN_READ(T(p[(_effect = 0, 0)]).x);
    } else {
        return isKnown = false;
    }
}
#undef MSL_CAN_READ

template <class T> constexpr bool _in_constant(const volatile T* p) {
    if (__builtin_is_constant_evaluated()) {
        bool isKnown = false;
        const bool isConstant = _is_constant_value(const_cast<const T*>(p), isKnown);
        if (isKnown)
            return isConstant;
    }
    return _is_constant(p);
}
template <class T> constexpr bool _in_thread(const volatile T* p) {
    if (__builtin_is_constant_evaluated()) {
        bool isKnown = false;
        const bool isConstant = _is_constant_value(const_cast<const T*>(p), isKnown);
        if (isKnown)
            return !isConstant;
    }
    return _is_thread(p);
}
template <class T, uint n> constexpr bool _in_constant(T (*list)[n]) {
    return _in_constant(&(*list)[0]);
}
template <class T, uint n> constexpr bool _in_thread(T (*list)[n]) {
    return _in_thread(&(*list)[0]);
}

} // namespace metal
