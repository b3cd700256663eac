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
};

struct Compilation {
    bool failed = false;
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
