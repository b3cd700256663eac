// LLVM's instructions on values, one topic a file: each writes the instruction and gives its id.
#pragma once

#include "TarnwickMSL/Translation/Spirv/Body.h"

#include <llvm/IR/IntrinsicInst.h>

namespace tarnwick::msl::spirv {

Id writeBinary(Body& body, const llvm::BinaryOperator& operation);
Id writeCompare(Body& body, const llvm::CmpInst& compare);
Id writeCast(Body& body, const llvm::CastInst& cast);

// Vectors and aggregates: insertelement, extractelement, shufflevector, insertvalue, extractvalue.
// A lane's insertion that another insertion takes up is written there: `isDeferred`.
bool isDeferred(const llvm::Instruction& instruction);
Id writeInsertElement(Body& body, const llvm::InsertElementInst& insert);
Id writeExtractElement(Body& body, const llvm::ExtractElementInst& extract);
Id writeShuffle(Body& body, const llvm::ShuffleVectorInst& shuffle);
Id writeInsertValue(Body& body, const llvm::InsertValueInst& insert);
Id writeExtractValue(Body& body, const llvm::ExtractValueInst& extract);

// LLVM's intrinsics; those without a value give 0. Throws TranslationError on unknown ones.
Id writeIntrinsic(Body& body, const llvm::IntrinsicInst& call);
Id writeIntegerIntrinsic(Body& body, const llvm::IntrinsicInst& call);
Id writeReduction(Body& body, const llvm::IntrinsicInst& call);

// Arithmetic of floats; without `contract` it stays as it is written.
Id writeFloat(Body& body, const llvm::Instruction& source, spv::Op op, llvm::Type* type,
              Operands operands);
bool isBoolean(llvm::Type* type);

} // namespace tarnwick::msl::spirv
