// The `main` around an entry point: inputs in, the call, outputs out.
#pragma once

#include "TarnwickMSL/Translation/Passes/Entry/Interface.h"

namespace tarnwick::msl {

// Makes shader.main, which calls `function` (in shader.module already) once: its arguments come
// from external globals, textures and samplers are constant handles, the result goes to external
// globals. Fills shader.interface and shader.textures. A kernel's invocations outside the exact
// grid return at once. Returns the call.
llvm::CallBase* wrap(ShaderModule& shader, llvm::Function& function, const EntrySignature& entry,
                     const Varyings& varyings);

} // namespace tarnwick::msl
