// Every step's result as text, for whoever asks with TARNWICK_MSL_DUMP.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

#include <string>

namespace tarnwick::msl {

// The module's code, and for a structured one its interface and merges as comments before it.
std::string text(const llvm::Module& module);
std::string text(const ShaderModule& shader);

// Writes the text of `step` into the folder that the environment's TARNWICK_MSL_DUMP names, as
// NAME.STEP.ll; does nothing without it.
void dump(const llvm::Module& module, llvm::StringRef name, llvm::StringRef step);
void dump(const ShaderModule& shader, llvm::StringRef step);

} // namespace tarnwick::msl
