// LLVM's instructions on values, one topic a file: each writes the instruction and gives its id.
#pragma once

#include "TarnwickMSL/Translation/Spirv/Body.h"

#include <llvm/IR/IntrinsicInst.h>

#include <optional>

namespace tarnwick::msl::spirv {

Id writeBinary(Body& body, const llvm::BinaryOperator& operation);
Id writeCompare(Body& body, const llvm::CmpInst& compare);
Id writeCast(Body& body, const llvm::CastInst& cast);

// The scalar that a shufflevector repeats in every lane, where it is a value by itself; else null.
const llvm::Value* repeatedScalar(const llvm::Value* value);

// A vector times one scalar; nothing where the product is another.
struct Factor {
    const llvm::Value* vector = nullptr;
    const llvm::Value* splat = nullptr; // the operand that repeats
    const llvm::Value* scalar = nullptr;
};
std::optional<Factor> factorOf(const llvm::BinaryOperator& product);

// Whether an insertelement or shufflevector is written where its users ask for it, not at its own
// place: its users take its parts. Never one that a phi takes.
bool isDeferred(const llvm::Instruction& instruction);

// Vectors and aggregates: insertelement, extractelement, shufflevector, insertvalue, extractvalue.
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
