// Values of half in floats.
#pragma once

#include "TarnwickMSL/Translation/Passes/Widths/Pairs.h"

namespace tarnwick::msl {

// Scalars or vectors. No result depends on how a device treats subnormal floats.
class Halves {
  public:
    explicit Halves(FoldingBuilder& builder) : builder_(builder) {}

    // The half nearest to a float, ties to even (IEEE 754-2019, 4.3.1). The result of +, -, *, /
    // and sqrt of two halves in float, rounded so, is that of the operation in half: a float has
    // more than twice the digits of a half.
    llvm::Value* rounded(llvm::Value* real);

    // a * b + c of halves, rounded once.
    llvm::Value* fused(llvm::Value* a, llvm::Value* b, llvm::Value* c);

    llvm::Value* toBits(llvm::Value* half);   // a float that is a half's value: a word below 2^16
    llvm::Value* fromBits(llvm::Value* bits); // of a word below 2^16

  private:
    llvm::Value* asWords(llvm::Value* real);
    llvm::Value* asReals(llvm::Value* words);
    llvm::Value* isAbove(llvm::Value* word, std::uint32_t limit);

    FoldingBuilder& builder_;
};

} // namespace tarnwick::msl
