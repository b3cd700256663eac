// Logs of a program, as instructions of NonSemantic.DebugPrintf.
#pragma once

#include "TarnwickMSL/Translation/Spirv/Body.h"

namespace tarnwick::msl::spirv {

// Writes log_start, log_value or log_end; `what` is the last word. Throws TranslationError on a
// format that DebugPrintf does not have, or that does not fit the values.
void writeLogCall(Body& body, llvm::StringRef what, const llvm::CallInst& call);

} // namespace tarnwick::msl::spirv
