// Arithmetic of 64-bit integers as pairs of 32-bit words, without branches or loops.
#pragma once

#include <llvm/Analysis/InstSimplifyFolder.h>
#include <llvm/IR/IRBuilder.h>

namespace tarnwick::msl {

// Folds and simplifies what it builds; a constant half of a pair then costs nothing.
using FoldingBuilder = llvm::IRBuilder<llvm::InstSimplifyFolder>;

// Both parts are i32 or vectors of as many i32.
struct Pair {
    llvm::Value *low = nullptr, *high = nullptr;
};

enum class Sign : std::uint8_t { unsigned_, signed_ };

// Every function gives the value that LLVM's instruction of that name gives for i64, where that is
// defined. A division by zero gives any value.
class Pairs {
  public:
    explicit Pairs(FoldingBuilder& builder) : builder_(builder) {}

    Pair extended(llvm::Value* word, Sign sign);
    Pair choice(llvm::Value* condition, Pair a, Pair b);

    Pair add(Pair a, Pair b);
    Pair subtract(Pair a, Pair b);
    Pair multiply(Pair a, Pair b);
    Pair negated(Pair a);
    Pair magnitude(Pair a); // as unsigned, so that it is right for the least number

    struct Division {
        Pair quotient, remainder;
    };
    Division divide(Pair a, Pair b, Sign sign);

    // Distances are words in [0, 63].
    Pair shiftLeft(Pair a, llvm::Value* distance);
    Pair shiftRight(Pair a, llvm::Value* distance, Sign sign);

    llvm::Value* isZero(Pair a);
    llvm::Value* isNegative(Pair a);
    llvm::Value* equal(Pair a, Pair b);
    llvm::Value* less(Pair a, Pair b, Sign sign);
    llvm::Value* compare(llvm::CmpInst::Predicate predicate, Pair a, Pair b);

    // Bit counts are words.
    llvm::Value* population(Pair a);
    llvm::Value* leadingZeros(Pair a);
    llvm::Value* trailingZeros(Pair a);
    Pair reversed(Pair a);
    Pair swappedBytes(Pair a);

    // To the nearest float, ties to even. From a float in the range of the integer, towards zero.
    llvm::Value* toFloat(Pair a, Sign sign);
    Pair fromFloat(llvm::Value* value, Sign sign);

  private:
    llvm::Value* number(llvm::Value* like, std::uint32_t value) {
        return llvm::ConstantInt::get(like->getType(), value);
    }
    llvm::Value* function(llvm::Intrinsic::ID id, llvm::Value* a) {
        return builder_.CreateUnaryIntrinsic(id, a);
    }
    llvm::Value* highProduct(llvm::Value* a, llvm::Value* b);
    llvm::Value* quotientOfWords(Pair a, llvm::Value* b);
    Division divideUnsigned(Pair a, Pair b);

    FoldingBuilder& builder_;
};

} // namespace tarnwick::msl
