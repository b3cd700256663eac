// Arithmetic of integers of 8 and 16 bits in the low bits of words, whose other bits may have any
// value.
#pragma once

#include "TarnwickMSL/Translation/Passes/Widths/Pairs.h"

namespace tarnwick::msl {

class SmallIntegers {
  public:
    // Of 8 or 16 bits.
    SmallIntegers(FoldingBuilder& builder, unsigned bits) : builder_(builder), bits_(bits) {}

    // The word of the same value: the other bits become zeros, or copies of the sign.
    llvm::Value* extended(llvm::Value* word, Sign sign);

    // What LLVM's operation gives, in a word.
    llvm::Value* operation(llvm::Instruction::BinaryOps opcode, llvm::Value* a, llvm::Value* b);
    llvm::Value* compare(llvm::CmpInst::Predicate predicate, llvm::Value* a, llvm::Value* b);

    // Null if the function is not known.
    llvm::Value* function(llvm::Intrinsic::ID id, llvm::ArrayRef<llvm::Value*> operands);

  private:
    llvm::Value* number(llvm::Value* like, std::uint64_t value) {
        return llvm::ConstantInt::get(like->getType(), value);
    }
    llvm::Value* clamped(llvm::Value* word);
    llvm::Value* funnel(bool isLeft, llvm::ArrayRef<llvm::Value*> operands);
    llvm::Value* bitFunction(llvm::Intrinsic::ID id, llvm::Value* word);

    FoldingBuilder& builder_;
    unsigned bits_;
};

} // namespace tarnwick::msl
