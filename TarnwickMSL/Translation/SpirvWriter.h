// Step 5: writes a structured `main` as SPIR-V and lists the resources that it binds.
#pragma once

#include "TarnwickMSL/EntryPoint.h"
#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

// Throws TranslationError on code that SPIR-V cannot express, and CompilerFault on code that
// earlier steps should have removed.
EntryPoint writeSpirv(const ShaderModule& shader);

} // namespace tarnwick::msl
