// The address space of a pointer, for functions that differ in it (Metal Shading Language 3.1, 4).
// The front end calls these; the step `address-spaces` answers.
#pragma once

namespace metal {

bool _in_device(const volatile void*) asm("msl.in_device.1");
bool _in_constant(const volatile void*) asm("msl.in_constant.1");
bool _in_thread(const volatile void*) asm("msl.in_thread.1");
bool _in_threadgroup(const volatile void*) asm("msl.in_threadgroup.1");

} // namespace metal
