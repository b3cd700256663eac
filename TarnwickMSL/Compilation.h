// The result of a compilation.
#pragma once

#include "TarnwickMSL/EntryPoint.h"
#include "TarnwickMSL/Reflection.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tarnwick::msl {

enum class DiagnosticKind : std::uint8_t { error, warning, note };

// One message of the compiler. A note belongs to the error or warning before it.
struct Diagnostic {
    DiagnosticKind kind = DiagnosticKind::error;
    std::string file;         // as #line or the compilation named it; empty: about no place
    std::uint32_t line = 0;   // from 1; 0: about no place
    std::uint32_t column = 0; // from 1, in bytes; 0: about no place
    std::uint32_t length = 0; // bytes of the line that it is about
    std::string text;         // one line

    bool operator==(const Diagnostic&) const = default;
};

struct Compilation {
    bool failed = false;
    // The compiler itself failed: it crashed, ran out of time, memory or stack, or could not be
    // started. Nothing is known about the program.
    bool isCompilersFault = false;
    std::vector<EntryPoint> entryPoints; // in source order; empty if `failed`
    // The compiler's messages in Clang's form ("file:line:column: severity: message", excerpt,
    // caret, and at the end "N errors generated."). May hold warnings if not `failed`.
    std::string messages;
    std::vector<Diagnostic> diagnostics; // the same as data, in the same order
    std::vector<std::string> files;      // read from the folders of includes, each once, in order
    Reflection reflection;               // if CompileOptions::reflects
    // The entry points as text of the SPIR-V assembler, in their order, if CompileOptions::lists.
    std::vector<std::string> listings;
};

} // namespace tarnwick::msl
