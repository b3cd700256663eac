// Macros of the language's headers that programs use in their own declarations. Those that only
// restrict the arguments of functions are empty.
#pragma once

#define METAL_FUNC inline __attribute__((always_inline))
#define METAL_ALIGN(...) alignas(__VA_ARGS__)
#define METAL_NORETURN [[noreturn]]
#define METAL_DEPRECATED(...)
#define METAL_UNAVAILABLE
#define METAL_NOTHROW
#define METAL_PURE
#define METAL_CONST
#define METAL_CONST_ARG(...)
#define METAL_ZERO_ARG(...)
#define METAL_VALID_LEVEL_ARG(...)
#define METAL_VALID_LOD_ARG(...)
#define METAL_VALID_LOAD_ORDER(...)
#define METAL_VALID_STORE_ORDER(...)
#define METAL_VALID_RENDER_TARGET(...)
