// Step 5: a structured `main` to SPIR-V words and the list of what it binds.
#pragma once

#include "TarnwickMSL/EntryPoint.h"
#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

// Throws TranslationError on code that SPIR-V has no form for.
EntryPoint writeSpirv(const ShaderModule& shader);

} // namespace tarnwick::msl
