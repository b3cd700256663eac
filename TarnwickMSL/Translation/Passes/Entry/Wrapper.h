// The `main` around an entry point: inputs in, the call, outputs out.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

// Makes shader.main of the entry point's function, which is the only body in shader.module: its
// arguments come from external globals, textures and samplers are constant handles, the result goes
// to external globals. Fills shader.interface, shader.textures and shader.samplers. A kernel's
// invocations outside the exact grid return at once. The locations of values between the stages
// follow from all entry points of the program.
void wrap(ShaderModule& shader, const EntrySignature& entry,
          const std::vector<EntrySignature>& allEntries);

} // namespace tarnwick::msl
