// Values that are equal in all threads (<metal_uniform>; Metal Shading Language 3.1, 2.14). The type
// is a hint, which the compiler needs for no code, so that it is the type itself: arithmetic,
// members, functions and templates are those of T. The front end checks what a uniform value is made
// of (Uniforms.h), and gives `uniform` this name, so that programs may have functions and variables
// called so.
#pragma once

namespace metal {

template <class T> using msl_uniform = T;

} // namespace metal
