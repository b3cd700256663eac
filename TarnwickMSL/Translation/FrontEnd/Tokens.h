// The pass over a program's tokens, after preprocessing and before parsing: it turns what C++ has
// no form for into what it has.
#pragma once

#include <vector>

namespace clang {
class Preprocessor;
class Token;
} // namespace clang

namespace tarnwick::msl {

// Reads the main file to its end and gives its tokens, the end included, as the parser is to see
// them:
//  - constructors of vectors, `float4(v3, 1)`, `float4{...}`, `float4 v(a, b)`, `float4 v = {...}`,
//    members' initialisers, casts, and the same on template parameters, become
//    msl_make<float4>(...);
//  - `vertex`, `fragment` and `kernel` become attributes, `constant` const; `device` and
//    `threadgroup` leave an attribute on an entry point's argument, else nothing; `thread` nothing;
//  - of functions that differ in address spaces alone the first stays;
//  - a `threadgroup` variable becomes a static one of its own section.
// Words that shaders may not use (`double`, `goto`, ...) are reported. Every token keeps a place
// of the user's.
std::vector<clang::Token> programTokens(clang::Preprocessor& preprocessor);

} // namespace tarnwick::msl
