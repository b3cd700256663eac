// Choices of pointers as numbers: a root, and an offset into it (Pointers.cpp explains them).
#pragma once

#include "TarnwickMSL/Translation/Passes/Memory/BufferAddresses.h"
#include "TarnwickMSL/Translation/Passes/Memory/PointersInMemory.h"

#include <llvm/ADT/MapVector.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/Operator.h>

#include <optional>

namespace tarnwick::msl {

// What a phi or select of pointers has become: the number of its root, and for each root that it
// may be how far into it, in units.
struct Chosen {
    llvm::Value* which = nullptr;
    llvm::MapVector<llvm::Value*, llvm::Value*> offsets;
};

class PointerNumbers {
  public:
    PointerNumbers(ShaderModule& shader, const PointersInMemory& memory);

    // Sets the unit of offsets, which all of these pointers share. Earlier Chosen are invalid if
    // the pointers are others than the last time.
    void workOn(llvm::ArrayRef<llvm::Value*> pointers);
    std::uint64_t unit() const { return unit_; } // bytes

    // The numbers of one of the pointers, or of one that they are made of.
    Chosen chosen(llvm::Value* pointer);

    // Whether a Chosen is the root.
    llvm::Value* isRoot(const Chosen& at, llvm::Value* root, llvm::IRBuilder<>& builder);
    // The offset into the root that it is.
    llvm::Value* offset(const Chosen& at, llvm::IRBuilder<>& builder);
    // As 64 bits: 0 for null, and numbers beyond all addresses for the thread's own variables.
    llvm::Value* addressOf(const Chosen& at, llvm::IRBuilder<>& builder);
    // As an offset into `everywhere`. Throws TranslationError on a variable of the thread.
    Chosen asAddress(const Chosen& at, llvm::IRBuilder<>& builder);
    // A number in own memory: the root's above 32 bits, the offset in units of own memory below.
    llvm::Value* packed(const Chosen& at, llvm::IRBuilder<>& builder);
    // The steps from `base`, which is chosen, to `pointer` again, from one root.
    llvm::Value* rebuilt(llvm::Value* pointer, llvm::Value* base, llvm::Value* root,
                         llvm::IRBuilder<>& builder);

    llvm::Value* everywhere() const { return everywhere_; }
    llvm::Constant* constant(std::uint64_t value) const {
        return llvm::ConstantInt::get(word_, value);
    }

  private:
    Chosen alongGep(llvm::GEPOperator& step);
    Chosen atRoot(llvm::Value* root, llvm::Value* offset);
    Chosen merged(llvm::PHINode& phi);
    Chosen mergedAddress(llvm::PHINode& phi);
    Chosen merged(llvm::SelectInst& select);
    Chosen converted(llvm::IntToPtrInst& conversion);
    llvm::Value* bytesAlong(llvm::GEPOperator& step, llvm::IRBuilder<>& builder);
    llvm::Value* inUnits(llvm::Value* index, std::uint64_t scale, llvm::IRBuilder<>& builder);
    std::uint64_t ownUnit();

    llvm::Function& main_;
    const PointersInMemory& memory_;
    const llvm::DataLayout& layout_;
    llvm::Type* word_;
    llvm::Type* wide_;
    llvm::Value* everywhere_;
    BufferAddresses addresses_;
    llvm::DenseMap<llvm::Value*, Chosen> known_;
    std::optional<std::uint64_t> ownUnit_; // of the pointers in own memory; 0: all offsets are 0
    llvm::MapVector<llvm::Value*, std::uint64_t> numbers_; // of the roots
    llvm::SmallVector<llvm::Value*, 2> last_; // the pointers that known_ and unit_ are for
    std::uint64_t unit_ = 0;
};

} // namespace tarnwick::msl
