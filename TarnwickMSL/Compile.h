// Metal Shading Language in; SPIR-V with its bindings, or the compiler's own text, out.
#pragma once

#include "TarnwickMSL/EntryPoint.h"
#include "TarnwickMSL/Target.h"

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::msl {

struct CompileOptions {
    // Longest wall time of one compilation; past it the compilation is ended and `failed` is set.
    std::chrono::milliseconds limit{8000};
    Target target; // without it: code for any device
    // The name that #line gives to some part of the source. That part then gets warnings that are
    // off by default: unused variables, unused parameters of functions that only it calls,
    // variables that are read before they are set, integer divisions that drop a fraction. No
    // other part gets any warning. Empty: the default warnings, in all parts.
    std::string moreWarningsIn;
};

struct Compilation {
    bool failed = false;
    // The compiler itself failed: it crashed, ran out of time or could not be started. Nothing is
    // known about the program then.
    bool isCompilersFault = false;
    std::vector<EntryPoint> entryPoints; // in source order; empty when `failed`
    // The compiler's messages in Clang's form ("file:line:column: severity: message", excerpt,
    // caret, and at the end "N errors generated."). May hold warnings when not `failed`.
    std::string messages;
};

// Compiles a whole program's text. Never throws on bad source: what the compiler finds is data.
//
// The work is done in a child process that stays warm between calls, so a crash or a runaway in
// the compiler's libraries costs that child only and becomes a `failed` compilation. Blocks its
// caller; may be called from any thread, one compilation at a time (calls wait for each other).
Compilation compile(std::string_view source, const CompileOptions& options = {});

// Starts the child ahead of the first compilation, without waiting for it.
void warmUp();

} // namespace tarnwick::msl
