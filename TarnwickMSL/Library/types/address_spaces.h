// The address space of a pointer, for functions that differ in it (Metal Shading Language 3.1, 4).
// The front end calls these; the step `address-spaces` answers.
#pragma once

namespace metal {

bool _is_device(const volatile void*) asm("msl.in_device.1");
bool _is_threadgroup(const volatile void*) asm("msl.in_threadgroup.1");
bool _in_constant(const volatile void*) asm("msl.in_constant.1");
bool _in_thread(const volatile void*) asm("msl.in_thread.1");

// A constant expression has no memory of the device or of a threadgroup.
constexpr bool _in_device(const volatile void* p) {
    return !__builtin_is_constant_evaluated() && _is_device(p);
}
constexpr bool _in_threadgroup(const volatile void* p) {
    return !__builtin_is_constant_evaluated() && _is_threadgroup(p);
}

} // namespace metal
