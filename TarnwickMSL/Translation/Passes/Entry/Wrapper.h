// Makes the `main` around an entry point: inputs, the call, outputs.
#pragma once

#include "TarnwickMSL/Target.h"
#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

// Makes shader.main from the function of the entry point, which must be the only body in
// shader.module. Its arguments are read from external globals, textures and samplers are constant
// handles, and its result is written to external globals. Fills shader.interface, shader.textures
// and shader.samplers. Invocations of a kernel outside the exact grid return at once. The locations
// of values between stages depend on all entry points of the program.
void wrap(ShaderModule& shader, const EntrySignature& entry,
          const std::vector<EntrySignature>& allEntries, const Target& target);

} // namespace tarnwick::msl
