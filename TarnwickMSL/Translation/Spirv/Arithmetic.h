// LLVM's instructions on numbers: binary operations, comparisons, conversions.
#pragma once

#include "TarnwickMSL/Translation/Spirv/Body.h"

#include <llvm/IR/Instructions.h>

namespace tarnwick::msl::spirv {

Id writeBinary(Body& body, const llvm::BinaryOperator& operation);
Id writeCompare(Body& body, const llvm::CmpInst& compare);
Id writeCast(Body& body, const llvm::CastInst& cast);

// Arithmetic of floats. An operation without `contract` is decorated NoContraction.
Id writeFloat(Body& body, const llvm::Instruction& source, spv::Op op, llvm::Type* type,
              Operands operands);
bool isBoolean(llvm::Type* type);

} // namespace tarnwick::msl::spirv
