// Steps 2 to 4: from the front end's module to a structured `main` for each entry point.
#pragma once

#include "TarnwickMSL/Target.h"
#include "TarnwickMSL/Translation/ShaderModule.h"

#include <vector>

namespace tarnwick::msl {

// Works on the whole program's module once: comparisons' lanes, then each function's own clean-up.
// Consumes nothing; the module is shared by the entry points that are cut from it afterwards.
void prepare(llvm::Module& module, const std::vector<EntrySignature>& entries);

// Cuts one entry point out of a prepared module: clones what it reaches, wraps it in `main`,
// inlines, optimises and structures it. Throws TranslationError on what cannot be drawn.
ShaderModule lower(const llvm::Module& module, const EntrySignature& entry,
                   const std::vector<EntrySignature>& allEntries, const Target& target = {});

} // namespace tarnwick::msl
