// The last step for WGSL: writes a structured `main` as text of the WebGPU Shading Language, and
// lists the resources that it binds.
#pragma once

#include "TarnwickMSL/EntryPoint.h"
#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

// Throws TranslationError on code that WGSL cannot express, and CompilerFault on code that earlier
// steps should have removed.
EntryPoint writeWgsl(const ShaderModule& shader);

} // namespace tarnwick::msl
