// Errors of the front end's own rules, reported as Clang reports its own.
#pragma once

#include <clang/Basic/Diagnostic.h>
#include <clang/Basic/SourceLocation.h>
#include <llvm/ADT/StringRef.h>

namespace tarnwick::msl {

// The message has %0 and %1 for the words.
void reportError(clang::DiagnosticsEngine& diagnostics, clang::SourceLocation at,
                 const char* message, llvm::StringRef first = "", llvm::StringRef second = "");

} // namespace tarnwick::msl
