// The result of a compilation.
#pragma once

#include "TarnwickMSL/EntryPoint.h"

#include <string>
#include <vector>

namespace tarnwick::msl {

struct Compilation {
    bool failed = false;
    // The compiler itself failed: it crashed, ran out of time or could not be started. Nothing is
    // known about the program.
    bool isCompilersFault = false;
    std::vector<EntryPoint> entryPoints; // in source order; empty if `failed`
    // The compiler's messages in Clang's form ("file:line:column: severity: message", excerpt,
    // caret, and at the end "N errors generated."). May hold warnings if not `failed`.
    std::string messages;
};

} // namespace tarnwick::msl
