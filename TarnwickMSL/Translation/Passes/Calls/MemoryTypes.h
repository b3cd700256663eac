// LLVM types of values in memory.
#pragma once

#include "TarnwickMSL/EntryPoint.h"

#include <llvm/IR/DerivedTypes.h>

namespace tarnwick::msl {

// The type of a scalar. A bool has a byte.
llvm::Type* scalarType(llvm::LLVMContext& context, Scalar scalar);

// The type with integers of 64 bits in place of pointers. The offsets of members stay.
llvm::Type* withoutPointers(llvm::Type* type);

} // namespace tarnwick::msl
