#include "TarnwickMSL/Translation/FrontEnd/Reports.h"

namespace tarnwick::msl {

void reportError(clang::DiagnosticsEngine& diagnostics, clang::SourceLocation at,
                 const char* message, llvm::StringRef first, llvm::StringRef second) {
    const unsigned id =
        diagnostics.getDiagnosticIDs()->getCustomDiagID(clang::DiagnosticIDs::Error, message);
    diagnostics.Report(at, id) << first << second;
}

} // namespace tarnwick::msl
