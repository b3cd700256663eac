// Building vectors and aggregates and taking them apart.
#pragma once

#include "TarnwickMSL/Translation/Spirv/Body.h"

#include <llvm/IR/Instructions.h>

#include <optional>

namespace tarnwick::msl::spirv {

// The scalar that a shufflevector repeats in every lane; null if there is no such value.
const llvm::Value* repeatedScalar(const llvm::Value* value);

// The factors of a product of a vector and one scalar; absent for other products.
struct Factor {
    const llvm::Value* vector = nullptr;
    const llvm::Value* splat = nullptr; // the operand that repeats
    const llvm::Value* scalar = nullptr;
};
std::optional<Factor> factorOf(const llvm::BinaryOperator& product);

// Whether an insertelement or shufflevector is written at its uses instead of its own place,
// because its users read its parts. Never if a phi uses it.
bool isDeferred(const llvm::Instruction& instruction);

Id writeInsertElement(Body& body, const llvm::InsertElementInst& insert);
Id writeExtractElement(Body& body, const llvm::ExtractElementInst& extract);
Id writeShuffle(Body& body, const llvm::ShuffleVectorInst& shuffle);
Id writeInsertValue(Body& body, const llvm::InsertValueInst& insert);
Id writeExtractValue(Body& body, const llvm::ExtractValueInst& extract);

} // namespace tarnwick::msl::spirv
