// Calls with operands or results of types that the target lacks.
#pragma once

#include "TarnwickMSL/Translation/Passes/Widths/PartMap.h"

#include <llvm/IR/Instructions.h>

#include <optional>

namespace tarnwick::msl {

// Of LLVM's intrinsics and of built-in functions. The parts of the result, or the result itself if
// the target has its type; nothing if the call is not known. A function constant is zero, and makes
// the shader shaped by constants. Throws TranslationError for what needs 64 bits in the device.
std::optional<Parts> loweredCall(llvm::CallInst& call, const PartMap& parts, ShaderModule& shader,
                                 FoldingBuilder& builder);

} // namespace tarnwick::msl
