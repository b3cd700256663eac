// Step 5: writes a structured `main` as SPIR-V and lists the resources that it binds.
#pragma once

#include "TarnwickMSL/EntryPoint.h"
#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

// Throws TranslationError on code that SPIR-V has no form for, and CompilerFault on code that the
// steps before should not leave.
EntryPoint writeSpirv(const ShaderModule& shader);

} // namespace tarnwick::msl
