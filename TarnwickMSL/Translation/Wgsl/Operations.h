// Operations on values: arithmetic, comparisons, conversions and choices.
#pragma once

#include "TarnwickMSL/Translation/Wgsl/Body.h"

namespace tarnwick::msl::wgsl {

Expression writeBinary(Body& body, const llvm::BinaryOperator& operation);
Expression writeCompare(Body& body, const llvm::CmpInst& compare);
Expression writeCast(Body& body, const llvm::CastInst& cast);
Expression writeSelect(Body& body, const llvm::SelectInst& choice);

// Whether a float, or each lane, is NaN. Tests the bits: WGSL may assume that there is no NaN.
Expression isNan(Body& body, llvm::Type* type, const Expression& value);
// select(no, yes, condition)
Expression choice(const Expression& condition, const Expression& yes, const Expression& no);
// Converts a value to an integer; numbers out of its range become its ends, NaN becomes 0.
Expression saturated(Body& body, llvm::Type* to, llvm::Type* from, const Expression& value,
                     Sign sign);

} // namespace tarnwick::msl::wgsl
