// The token pass: rewrites a program's tokens, after preprocessing and before parsing, to C++ that
// Clang can parse.
#pragma once

#include "TarnwickMSL/Constants.h"

#include <vector>

namespace clang {
class Preprocessor;
class Token;
} // namespace clang

namespace tarnwick::msl {

// Reads the main file to its end. Returns the rewritten tokens, with the end of the file:
//  - constructors of vectors, `float4(v3, 1)`, `float4{...}`, `float4 v(a, b)`, `float4 v = {...}`,
//    members' initialisers, casts, and the same on template parameters, become
//    msl_make<float4>(...), or braces around as many scalars as lanes, `float2{x, y}`;
//  - `vertex`, `fragment` and `kernel` become attributes, `constant` const; `device` and
//    `threadgroup` become attributes of an entry point's argument, and are removed elsewhere;
//    `thread` is removed;
//  - of functions that differ only in address spaces, the first is kept;
//  - function constants become constants with their values, or declarations;
//  - a `threadgroup` variable becomes a static one of its own section.
// Reports keywords that shaders may not use (`double`, `goto`, ...). Every token leads back to a
// location in the program (usersPlace).
std::vector<clang::Token> programTokens(clang::Preprocessor& preprocessor,
                                        const ConstantValues& constants);

} // namespace tarnwick::msl
