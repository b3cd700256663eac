// Types of memory in which words of 32 bits stand for the scalars that a target lacks.
#pragma once

#include "TarnwickMSL/Translation/Passes/Widths/Stands.h"

#include <llvm/IR/DataLayout.h>

namespace tarnwick::msl {

// A type of the same layout, rounded up to whole words: members that the target has are at the same
// places, and words are between them. The type itself if the target has all its scalars.
llvm::Type* wordType(llvm::Type* type, const Stands& stands, const llvm::DataLayout& layout);

// The same bytes as a value of the word type; bytes behind the end are zero.
llvm::Constant* wordConstant(llvm::Constant& value, llvm::Type* wordType,
                             const llvm::DataLayout& layout);

} // namespace tarnwick::msl
