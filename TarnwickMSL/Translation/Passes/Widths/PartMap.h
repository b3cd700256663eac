// The values that stand for each value of a type that the target lacks.
#pragma once

#include "TarnwickMSL/Translation/Passes/Widths/Pairs.h"
#include "TarnwickMSL/Translation/Passes/Widths/Stands.h"

namespace tarnwick::msl {

// One value, or the low and the high word of a pair.
using Parts = llvm::SmallVector<llvm::Value*, 2>;

class PartMap {
  public:
    explicit PartMap(const Stands& stands) : stands_(stands) {}

    Stand standOf(const llvm::Value* value) const { return stands_.of(value->getType()); }
    Stand standOf(const llvm::Type* type) const { return stands_.of(type); }

    // The types of the parts of a type.
    llvm::SmallVector<llvm::Type*, 2> types(llvm::Type* type) const;

    // The parts of a value that has some, or the value itself. Throws CompilerFault if the value
    // should have parts, but has none yet.
    Parts of(llvm::Value* value, FoldingBuilder& builder) const;
    llvm::Value* one(llvm::Value* value, FoldingBuilder& builder) const {
        return of(value, builder).front();
    }
    Pair pair(llvm::Value* value, FoldingBuilder& builder) const;

    // An integer's lowest 32 bits; of a shorter one, extended.
    llvm::Value* word(llvm::Value* value, Sign sign, FoldingBuilder& builder) const;
    llvm::Value* signedWord(llvm::Value* value, FoldingBuilder& builder) const {
        return word(value, Sign::signed_, builder);
    }

    void set(llvm::Value& value, const Parts& parts) { parts_[&value] = parts; }

  private:
    Stands stands_;
    llvm::DenseMap<llvm::Value*, Parts> parts_;
};

} // namespace tarnwick::msl
